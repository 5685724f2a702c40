// Dynamic trees from the records of a scan.

#include "xmlp/base/report.h"
#include "xmlp/parse/builders.h"
#include "xmlp/parse/scanner.h"
#include "xmlp/tree/copies.h"
#include "xmlp/tree/owned_node.h"

namespace velda::xmlp {
namespace {

class TreeMaker {
public:
    TreeMaker(std::string_view body, const StringTable &names, const ElementRecords &scanned,
              XMLP_NODE *root)
        : body_(body.data()), names_(names.bytes()), elements_(scanned.elements.records()),
          attributes_(scanned.attributes.records()), root_(root) {}

    // False when memory runs out; what was made so far hangs under the root.
    bool make() {
        Place parent = {0, root_};
        for (uint32_t number = 1; number <= elements_.size(); ++number) {
            const ElementRecord &element = elements_[number - 1];
            while (parent.number != element.parent) {
                parent = enclosing_.last();
                enclosing_.pop();
            }
            OwnedNode owned(xmlp_initNode());
            if (owned == nullptr || !fill(owned.get(), element, number)) {
                return false;
            }
            XMLP_NODE *node = owned.release();
            link(node, parent.node);
            const bool isParent = number < elements_.size() && elements_[number].parent == number;
            if (isParent) {
                if (!enclosing_.push(parent)) {
                    XMLP_REPORT_FOR("xmlp_parse", "malloc failed.");
                    return false;
                }
                parent = {number, node};
            }
        }
        return true;
    }

private:
    struct Place {
        uint32_t number; // of a record plus 1
        XMLP_NODE *node;
    };

    // In this order, in which a parse without the records would make them: value, name, attributes.
    bool fill(XMLP_NODE *node, const ElementRecord &element, uint32_t number) {
        const bool isItem = element.isItem();
        if (element.valueSize != 0 && !setValue(node, element)) {
            return false;
        }
        node->name = isItem ? g_xmlp_itemName : newText(nameAt(element.nameOffset())).release();
        if (node->name == nullptr) {
            XMLP_REPORT_FOR("_getNameAttr", "malloc failed.");
            return false;
        }
        if (isItem) {
            node->type = XMLP_TYPE_ITEM;
        }
        XMLP_ATTR *last = nullptr;
        for (; !attributes_.empty() && attributes_.front().element == number;
             attributes_ = attributes_.last(attributes_.size() - 1)) {
            XMLP_ATTR *attr = newCopyOf(attributes_.front());
            if (attr == nullptr) {
                XMLP_REPORT_FOR("_getNameAttr", "malloc failed.");
                return false;
            }
            if (last == nullptr) {
                node->attrList = attr;
            } else {
                last->next = attr;
            }
            last = attr;
        }
        return true;
    }

    bool setValue(XMLP_NODE *node, const ElementRecord &element) {
        const char *text = body_ + element.value;
        const uint32_t size = element.valueSize;
        const bool isEscaped = element.isEscaped();
        const uint32_t valueSize = isEscaped ? xmlp_unTransStrLen(text, size) : size;
        auto value = allocate<char>(valueSize);
        if (value == nullptr) {
            return false;
        }
        if (isEscaped) {
            xmlp_unTransStr(value.get(), text, size);
        } else {
            std::memcpy(value.get(), text, size);
        }
        node->value = value.release();
        node->valueSize = valueSize;
        node->type = XMLP_TYPE_LEAF;
        return true;
    }

    static void link(XMLP_NODE *node, XMLP_NODE *parent) {
        XMLP_NODE *previous = parent->lastChild;
        node->parent = parent;
        node->prev = previous;
        parent->lastChild = node;
        if (previous != nullptr) {
            previous->next = node;
        } else {
            parent->firstChild = node;
            parent->type = node->type == XMLP_TYPE_ITEM ? XMLP_TYPE_LIST : XMLP_TYPE_BRANCH;
        }
    }

    std::string_view nameAt(uint32_t offset) const { return names_ + offset; }

    XMLP_ATTR *newCopyOf(const AttributeRecord &attribute) const {
        const bool hasValue = attribute.value != AttributeRecord::noValue;
        return newAttr(names_ + attribute.name,
                       hasValue ? names_ + attribute.value : std::string_view());
    }

    const char *body_;
    const char *names_;
    std::span<const ElementRecord> elements_;
    std::span<const AttributeRecord> attributes_; // those of elements still to be made
    XMLP_NODE *root_;
    Array<Place> enclosing_;
};

} // namespace

BuildResult buildDynamicTreeFast(std::string_view body, Indexer indexer, XMLP_NODE *&root) {
    OwnedTree tree(xmlp_initNode());
    if (tree == nullptr) {
        return BuildResult::noMemory;
    }
    StringTable names;
    ElementRecords scanned;
    switch (scanBody(body, indexer, names, scanned)) {
    case ScanResult::accepted:
        break;
    case ScanResult::refused:
        return BuildResult::refused;
    case ScanResult::noMemory:
        XMLP_REPORT_FOR("xmlp_parse", "malloc failed.");
        return BuildResult::noMemory;
    }
    if (!TreeMaker(body, names, scanned, tree.get()).make()) {
        return BuildResult::noMemory;
    }
    root = tree.release();
    return BuildResult::built;
}

} // namespace velda::xmlp
