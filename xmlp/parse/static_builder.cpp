// Static trees from the records of a scan. The text is only looked at again for values.

#include "xmlp/parse/builders.h"

#include "xmlp/base/report.h"
#include "xmlp/parse/scanner.h"
#include "xmlp/parse/static_block.h"

#include <cstring>

namespace velda::xmlp {
namespace {

class TreeWriter {
public:
    TreeWriter(std::string_view body, const ElementRecords &scanned, const StaticBlock &block)
        : body_(body.data()), scanned_(scanned), names_(block.names()), values_(block.values()),
          attrs_(block.attrs()), nodes_(block.nodes()),
          fixedTexts_(body.size() >= fixedSize ? body.size() - fixedSize + 1 : 0),
          fixedValues_(scanned.valueBytes >= fixedSize ? scanned.valueBytes - fixedSize + 1 : 0) {}

    XMLP_NODE *write() {
        *nodes_ = XMLP_NODE{};
        XMLP_NODE *node = nodes_;
        for (const ElementRecord &element : scanned_.elements.records()) {
            writeElement(element, ++node);
        }
        writeAttributes();
        return nodes_;
    }

private:
    [[gnu::always_inline]] void writeElement(const ElementRecord &element, XMLP_NODE *node) {
        XMLP_NODE *parent = nodes_ + element.parent;
        XMLP_NODE *previous = parent->lastChild;
        char *value = nullptr;
        uint32_t valueSize = 0;
        uint32_t type = XMLP_TYPE_NONE;
        if (element.valueSize != 0) {
            value = values_ + valueBytes_;
            valueSize = writeValue(element, value);
            valueBytes_ += valueSize;
            type = XMLP_TYPE_LEAF;
        }
        const bool isItem = element.isItem();
        *node = {names_ + element.nameOffset(),
                 value,
                 valueSize,
                 isItem ? uint32_t{XMLP_TYPE_ITEM} : type,
                 nullptr,
                 parent,
                 previous,
                 nullptr,
                 nullptr,
                 nullptr};
        parent->lastChild = node;
        if (previous != nullptr) {
            previous->next = node;
        } else {
            parent->firstChild = node;
            parent->type = isItem ? XMLP_TYPE_LIST : XMLP_TYPE_BRANCH;
        }
    }

    // Gives the size of the value.
    [[gnu::always_inline]] uint32_t writeValue(const ElementRecord &element, char *value) const {
        const char *text = body_ + element.value;
        const uint32_t size = element.valueSize;
        if (element.isEscaped()) [[unlikely]] {
            return static_cast<uint32_t>(xmlp_unTransStr(value, text, size) - value);
        }
        // A copy of fixed size is quicker than one of few bytes; what it writes too much is written
        // over by what comes next.
        if (size <= fixedSize && element.value < fixedTexts_ && valueBytes_ < fixedValues_)
            [[likely]] {
            std::memcpy(value, text, fixedSize);
        } else {
            std::memcpy(value, text, size);
        }
        return size;
    }

    void writeAttributes() {
        XMLP_ATTR *attr = attrs_;
        uint32_t element = 0;
        for (const AttributeRecord &attribute : scanned_.attributes.records()) {
            char *value =
                attribute.value == AttributeRecord::noValue ? nullptr : names_ + attribute.value;
            *attr = {names_ + attribute.name, value, nullptr};
            if (attribute.element == element) {
                attr[-1].next = attr;
            } else {
                element = attribute.element;
                nodes_[element].attrList = attr;
            }
            ++attr;
        }
    }

    static constexpr size_t fixedSize = 16;

    const char *body_;
    const ElementRecords &scanned_;
    char *names_;
    char *values_;
    XMLP_ATTR *attrs_;
    XMLP_NODE *nodes_;
    // From offsets below these there are sixteen bytes to read and to write.
    size_t fixedTexts_;
    size_t fixedValues_;
    size_t valueBytes_ = 0; // written so far
};

} // namespace

BuildResult buildStaticTreeFast(std::string_view body, Indexer indexer, XMLP_NODE *&root) {
    StringTable names;
    ElementRecords scanned;
    const ScanResult result = scanBody(body, indexer, names, scanned);
    if (result == ScanResult::refused) {
        return BuildResult::refused;
    }
    StaticBlock block;
    if (result == ScanResult::noMemory ||
        !block.obtain(names,
                      {scanned.elements.size(), scanned.attributes.size(), scanned.valueBytes})) {
        XMLP_REPORT_FOR("xmlp_parse", "malloc failed.");
        return BuildResult::noMemory;
    }
    root = TreeWriter(body, scanned, block).write();
    block.release();
    return BuildResult::built;
}

} // namespace velda::xmlp
