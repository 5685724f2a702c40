// Static trees made of the records of a quick scan. The text is only looked at again for values.

#include "xmlp/quick_tree.h"

#include "xmlp/quick_scan.h"
#include "xmlp/static_block.h"

#include <cstring>

namespace velda::xmlp {
namespace {

class TreeWriter {
public:
    TreeWriter(std::string_view body, const ScannedText &scanned, const StaticBlock &block)
        : body_(body), scanned_(scanned), block_(block), value_(block.values()) {}

    XMLP_NODE *write() {
        *block_.nodes() = XMLP_NODE{};
        const size_t count = scanned_.elements.size();
        for (size_t i = 0; i < count; ++i) {
            writeElement(scanned_.elements[i], block_.nodes() + i + 1);
        }
        writeAttributes();
        return block_.nodes();
    }

private:
    void writeElement(const ElementRecord &element, XMLP_NODE *node) {
        XMLP_NODE *parent = block_.nodes() + element.parent;
        XMLP_NODE *previous = parent->lastChild;
        uint32_t type = element.valueSize != 0 ? XMLP_TYPE_LEAF : XMLP_TYPE_NONE;
        if (element.isItem != 0) {
            type = XMLP_TYPE_ITEM;
        }
        char *value = element.valueSize != 0 ? writeValue(element) : nullptr;
        *node = {block_.names() + element.name,
                 value,
                 element.valueSize,
                 type,
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
            parent->type = element.isItem != 0 ? XMLP_TYPE_LIST : XMLP_TYPE_BRANCH;
        }
    }

    char *writeValue(const ElementRecord &element) {
        char *value = value_;
        value_ += element.valueSize;
        const char *text = body_.data() + element.text;
        if (element.valueSize == element.textSize) {
            std::memcpy(value, text, element.textSize);
        } else {
            xmlp_unTransStr(value, text, element.textSize);
        }
        return value;
    }

    void writeAttributes() {
        const size_t count = scanned_.attributes.size();
        for (size_t i = 0; i < count; ++i) {
            const AttributeRecord &attribute = scanned_.attributes[i];
            XMLP_ATTR *attr = block_.attrs() + i;
            char *value = attribute.value == AttributeRecord::noValue
                              ? nullptr
                              : block_.names() + attribute.value;
            *attr = {block_.names() + attribute.name, value, nullptr};
            if (i > 0 && scanned_.attributes[i - 1].element == attribute.element) {
                attr[-1].next = attr;
            } else {
                block_.nodes()[attribute.element + 1].attrList = attr;
            }
        }
    }

    std::string_view body_;
    const ScannedText &scanned_;
    const StaticBlock &block_;
    char *value_;
};

} // namespace

QuickTree buildStaticTreeQuickly(std::string_view body, IndexMarkup indexMarkup, XMLP_NODE *&root) {
    if (body.size() > quickBodySizeLimit) {
        return QuickTree::declined;
    }
    NameTable names;
    if (!names.reserve(firstNameTableSize)) {
        return QuickTree::noMemory;
    }
    ScannedText scanned;
    switch (quickScan(body, indexMarkup, names, scanned)) {
    case ScanResult::taken:
        break;
    case ScanResult::declined:
        return QuickTree::declined;
    case ScanResult::noMemory:
        return QuickTree::noMemory;
    }
    StaticBlock block;
    if (!block.obtain(names,
                      {scanned.elements.size(), scanned.attributes.size(), scanned.valueBytes})) {
        return QuickTree::noMemory;
    }
    root = TreeWriter(body, scanned, block).write();
    block.handOver();
    return QuickTree::built;
}

} // namespace velda::xmlp
