// Documents written so that they read back as the same tree.
//
// A plain writer puts down names and values as they are, and not all of that can be read: the first '/'
// of a tag that ends with one is its end, a lead byte hides what follows it, an empty name needs white
// space in its place. Here each element is checked before it is written, and takes the form that can be
// read. What no form can hold is refused: a document is written whole or not at all.

#include "xmlp/base/chars.h"
#include "xmlp/base/entities.h"
#include "xmlp/base/memory.h"
#include "xmlp/base/report.h"
#include "xmlp/document/tree_writer.h"
#include "xmlp/parse/tag_reader.h"
#include "xmlp/tree/attr_names.h"
#include "xmlp/tree/node_type.h"
#include "xmlp/xmlp_internal.h"

#include <algorithm>

namespace velda::xmlp {
namespace {

const char *messageOf(XMLP_WRITE_CODE code) {
    switch (code) {
#define XMLP_WRITE_MESSAGE(name, value, message) \
    case name:                                   \
        return message;
        XMLP_WRITE_CODES(XMLP_WRITE_MESSAGE)
#undef XMLP_WRITE_MESSAGE
    case XMLP_WRITE_NONE:
        break;
    }
    return "";
}

// A sink that knows whether the character written last is complete, as a reader steps.
template <class Sink>
class Stepping {
public:
    explicit Stepping(Sink sink) : sink_(sink) {}

    void put(std::string_view text) {
        sink_.put(text);
        for (const char byte : text) {
            hidden_ = hidden_ > 0 ? hidden_ - 1 : characterLength(byte) - 1;
        }
    }
    void spaces(uint64_t count) { sink_.spaces(count); } // between elements alone
    bool isComplete() const { return hidden_ == 0; }
    const Sink &sink() const { return sink_; }

private:
    Sink sink_;
    uint32_t hidden_ = 0; // so many bytes still belong to the last character
};

bool holdsSlash(const XMLP_NODE &node) {
    for (const XMLP_ATTR *attr = node.attrList; attr != nullptr; attr = attr->next) {
        if (attr->value != nullptr && std::strchr(attr->value, '/') != nullptr) {
            return true;
        }
    }
    return false;
}

// Has the element an end tag?
bool isLong(const XMLP_NODE &node) {
    return node.firstChild != nullptr || node.valueSize != 0 || holdsSlash(node);
}

// Can this be the name in a tag that ends with "/>"? The first byte may be any but those that mean
// something there; no byte at all is what white space is read as.
bool isShortName(std::string_view name) {
    if (name.empty()) {
        return true;
    }
    constexpr std::string_view special("\0/<>", 4);
    const char first = name.front();
    return special.find(first) == std::string_view::npos && !isWhiteSpace(first) &&
           std::all_of(name.begin() + 1, name.end(), isNameChar);
}

XMLP_WRITE_CODE checkAttributes(const XMLP_NODE &node) {
    AttrNames names;
    for (const XMLP_ATTR *attr = node.attrList; attr != nullptr; attr = attr->next) {
        const std::string_view name = textOrNothing(attr->name);
        const std::string_view value = textOrNothing(attr->value);
        if (name.empty() || !std::all_of(name.begin(), name.end(), isNameChar) ||
            !std::all_of(value.begin(), value.end(), isAttrValueChar)) {
            return XMLP_WRITE_ATTRIBUTE;
        }
        const AttrNames::Result added = names.add(name);
        if (added != AttrNames::Result::isNew) {
            return added == AttrNames::Result::noMemory ? XMLP_WRITE_NO_MEMORY
                                                        : XMLP_WRITE_ATTRIBUTE;
        }
    }
    return XMLP_WRITE_NONE;
}

constexpr size_t unwritable = SIZE_MAX;

// Where in a value escaping ends, so that the '<' after it is seen; unwritable where it can't be.
//
// Escaping makes characters of which the value has only the beginning take other bytes than they took when
// it was read. A reference is longer than any of them reaches, so after it the steps start again; and a '<'
// or '>' that lies within one need not be escaped. So all is escaped up to some reference, the last one
// possible, and what follows stands as it is, its markup hidden. It is looked for from the end: `good` has
// a bit for each number of bytes that may belong to a character begun before, if the rest is to end whole.
size_t escapedPart(std::string_view value) {
    uint32_t good = 1;
    for (size_t i = value.size(); i > 0; --i) {
        const char byte = value[i - 1];
        const bool isSpecial = !referenceFor(byte).empty();
        if (isSpecial && (good & 1) != 0) {
            return i;
        }
        const uint32_t within = good << 1 & 0xE;
        const bool canBegin = !isSpecial && (good >> (characterLength(byte) - 1) & 1) != 0;
        good = byte == '&' ? 0 : within | (canBegin ? 1 : 0);
    }
    return (good & 1) != 0 ? 0 : unwritable;
}

// Under one parent all are items or none is, and items have no children.
bool canStandThere(const XMLP_NODE &node, std::string_view name) {
    const bool isItem = name == itemName;
    const XMLP_NODE &first = *node.parent->firstChild;
    const bool isLike = isItem == (textOrNothing(first.name) == itemName);
    const bool isSecondTopLevel = node.parent->parent == nullptr && &first != &node;
    return isLike && !isSecondTopLevel && !(isItem && node.firstChild != nullptr);
}

XMLP_WRITE_CODE check(const XMLP_NODE &node) {
    const std::string_view name = textOrNothing(node.name);
    if (!(isLong(node) ? canBeRepeated(name) : isShortName(name))) {
        return XMLP_WRITE_NAME;
    }
    if (!canStandThere(node, name)) {
        return XMLP_WRITE_PLACE;
    }
    const bool isBesideChildren = node.firstChild != nullptr && node.valueSize != 0;
    if (isBesideChildren || escapedPart({node.value, node.valueSize}) == unwritable) {
        return XMLP_WRITE_VALUE;
    }
    return checkAttributes(node);
}

// In the walk's order: the element after this one, or null.
const XMLP_NODE *following(const XMLP_NODE *root, const XMLP_NODE *node) {
    if (node->firstChild != nullptr) {
        return node->firstChild;
    }
    while (node != root && node->next == nullptr) {
        node = node->parent;
    }
    return node == root ? nullptr : node->next;
}

// The names from the top-level element down, as far as the path has capacity.
void writePath(const XMLP_NODE *root, const XMLP_NODE *node, char *path) {
    size_t end = 0;
    const XMLP_NODE *below = root;
    while (below != node && end < XMLP_WRITE_PATH_SIZE - 1) {
        const XMLP_NODE *child = node;
        while (child->parent != below) {
            child = child->parent;
        }
        const std::string_view name = textOrNothing(child->name);
        const size_t size = std::min(name.size(), XMLP_WRITE_PATH_SIZE - 2 - end);
        path[end++] = '/';
        std::memcpy(path + end, name.data(), size);
        end += size;
        below = child;
    }
    path[end] = '\0';
}

void fail(XMLP_WRITE_CODE code, XMLP_WRITE_ERROR &error) {
    error.code = code;
    error.message = messageOf(code);
    XMLP_REPORT_FOR("xmlp_writeDoc", "%s%s%s", error.path, error.path[0] != '\0' ? ": " : "",
                    error.message);
}

const auto putReadableTag = [](auto &sink, auto layout, const XMLP_NODE *node, uint32_t depth) {
    const std::string_view name = textOrNothing(node->name);
    layout.indent(sink, depth);
    sink.put("<");
    sink.put(name.empty() ? " " : name);
    putAttributes(sink, node);
    while (!sink.isComplete()) { // or the '>' would be taken for a part of the last character
        sink.put(" ");
    }
    sink.put(isLong(*node) ? ">" : "/>");
    if (isLong(*node) && node->firstChild == nullptr) {
        const size_t escaped = escapedPart({node->value, node->valueSize});
        escape({node->value, escaped}, [&sink](std::string_view part) { sink.put(part); });
        sink.put({node->value + escaped, node->valueSize - escaped});
        putClosingTag(sink, name);
    }
    layout.endLine(sink);
};

template <class Sink>
Sink putDocument(Sink plain, auto layout, const XMLP_TREE &tree) {
    if (tree.headerLen != 0) {
        plain.put({tree.header, tree.headerLen});
        layout.endLine(plain);
    }
    const XMLP_NODE *top = tree.rootNode->firstChild;
    if (top == nullptr) {
        plain.put("<"); // a tag that never ends is how a text without elements is read
        return plain;
    }
    if (tree.headerLen == 0 && startsWith(textOrNothing(top->name), "?")) {
        plain.put("."); // at the very beginning it would be read as a declaration
    }
    return writeElement(Stepping(plain), layout, top, 0, putReadableTag).sink();
}

char *writeDocument(const XMLP_TREE &tree, auto layout, uint32_t &size, XMLP_WRITE_ERROR &error) {
    const uint64_t length = putDocument(Measure(), layout, tree).length();
    const auto bytes = CheckedSize(1).add(static_cast<size_t>(length)).bytes();
    const bool isTooLong = length > UINT32_MAX || !bytes;
    char *text = isTooLong ? nullptr : static_cast<char *>(std::malloc(*bytes));
    if (text == nullptr) {
        fail(XMLP_WRITE_NO_MEMORY, error);
        return nullptr;
    }
    *putDocument(Writer(text), layout, tree).position() = '\0';
    size = static_cast<uint32_t>(length);
    return text;
}

} // namespace
} // namespace velda::xmlp

using namespace velda::xmlp;

char *xmlp_writeDoc(const XMLP_DOC *doc, uint32_t flags, uint32_t *size, XMLP_WRITE_ERROR *error) {
    XMLP_WRITE_ERROR ignored = {};
    XMLP_WRITE_ERROR &result = error != nullptr ? *error : ignored;
    result = {XMLP_WRITE_NONE, messageOf(XMLP_WRITE_NONE), {}};
    if (doc == nullptr || size == nullptr || doc->tree == nullptr ||
        doc->tree->rootNode == nullptr) {
        fail(XMLP_WRITE_PARAMS, result);
        return nullptr;
    }
    const XMLP_NODE *root = doc->tree->rootNode;
    for (const XMLP_NODE *node = root->firstChild; node != nullptr; node = following(root, node)) {
        const XMLP_WRITE_CODE code = check(*node);
        if (code != XMLP_WRITE_NONE) {
            writePath(root, node, result.path);
            fail(code, result);
            return nullptr;
        }
    }
    return (flags & XMLP_WRITE_INDENTED) != 0 ? writeDocument(*doc->tree, Indented{}, *size, result)
                                              : writeDocument(*doc->tree, Compact{}, *size, result);
}
