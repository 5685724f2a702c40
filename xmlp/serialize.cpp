// Trees written back as text, compact or indented.
//
// Measuring and writing are one walk over the tree, once with a sink that counts and once with a
// sink that stores, so the buffer has exactly the size of what is written. The walk goes by parent
// links; a tree may be as deep as it likes.

#include "xmlp/entities.h"
#include "xmlp/frame.h"
#include "xmlp/memory.h"
#include "xmlp/report.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>

namespace velda::xmlp {
namespace {

class Measure {
public:
    void byte(char) { ++length_; }
    void spaces(uint64_t count) { length_ += count; }
    void bytes(const char *, size_t size) { length_ += size; }
    void escaped(const char *text, uint32_t size) { length_ += escapedLength({text, size}); }
    uint64_t length() const { return length_; }

private:
    uint64_t length_ = 0;
};

class Writer {
public:
    explicit Writer(char *position) : position_(position) {}

    void byte(char c) { *position_++ = c; }
    void spaces(uint64_t count) {
        std::memset(position_, ' ', static_cast<size_t>(count));
        position_ += count;
    }
    void bytes(const char *text, size_t size) {
        std::memcpy(position_, text, size);
        position_ += size;
    }
    void escaped(const char *text, uint32_t size) {
        position_ = xmlp_transStr(position_, text, size);
    }
    char *position() const { return position_; }

private:
    char *position_;
};

struct Compact {
    void indent(auto &, uint32_t) const {}
    void endLine(auto &) const {}
};

struct Indented {
    void indent(auto &sink, uint32_t depth) const { sink.spaces(uint64_t{2} * depth); }
    void endLine(auto &sink) const { sink.byte('\n'); }
};

void putText(auto &sink, const char *text) {
    if (text != nullptr) {
        sink.bytes(text, std::strlen(text));
    }
}

void putStartOfTag(auto &sink, const XMLP_NODE *node) {
    sink.byte('<');
    putText(sink, node->name);
    for (const XMLP_ATTR *attr = node->attrList; attr != nullptr; attr = attr->next) {
        sink.byte(' ');
        putText(sink, attr->name);
        sink.bytes("=\"", 2);
        putText(sink, attr->value);
        sink.byte('"');
    }
}

void putClosingTag(auto &sink, const XMLP_NODE *node) {
    sink.bytes("</", 2);
    putText(sink, node->name);
    sink.byte('>');
}

// An element up to its first child: all of it where it has none.
void putOpening(auto &sink, auto layout, const XMLP_NODE *node, uint32_t depth) {
    layout.indent(sink, depth);
    putStartOfTag(sink, node);
    if (node->firstChild == nullptr && node->valueSize == 0) {
        sink.bytes("/>", 2);
    } else {
        sink.byte('>');
    }
    if (node->firstChild == nullptr && node->valueSize != 0) {
        sink.escaped(node->value, node->valueSize);
        putClosingTag(sink, node);
    }
    layout.endLine(sink);
}

void putElement(auto &sink, auto layout, const XMLP_NODE *element, uint32_t depth) {
    const XMLP_NODE *node = element;
    putOpening(sink, layout, node, depth);
    while (true) {
        if (node->firstChild != nullptr) {
            node = node->firstChild;
            ++depth;
        } else {
            // Up through the elements that end here, as far as the next sibling.
            while (node != element && node->next == nullptr) {
                node = node->parent;
                --depth;
                layout.indent(sink, depth);
                putClosingTag(sink, node);
                layout.endLine(sink);
            }
            if (node == element) {
                return;
            }
            node = node->next;
        }
        putOpening(sink, layout, node, depth);
    }
}

void putDocument(auto &sink, auto layout, const XMLP_TREE *tree) {
    if (tree->headerLen != 0) {
        sink.bytes(tree->header, tree->headerLen);
        layout.endLine(sink);
    }
    for (const XMLP_NODE *top = tree->rootNode->firstChild; top != nullptr; top = top->next) {
        putElement(sink, layout, top, 0);
    }
}

char *documentText(const char *function, const XMLP_TREE *tree, auto layout, uint32_t *length) {
    Measure measure;
    putDocument(measure, layout, tree);
    const auto room = CheckedSize(1).add(static_cast<size_t>(measure.length())).bytes();
    const bool canBeTold = measure.length() <= UINT32_MAX;
    *length = canBeTold ? static_cast<uint32_t>(measure.length()) : 0;
    char *text = canBeTold && room ? static_cast<char *>(std::malloc(*room)) : nullptr;
    if (text == nullptr) {
        XMLP_REPORT_FOR(function, "malloc failed.");
        return nullptr;
    }
    Writer writer(text);
    putDocument(writer, layout, tree);
    writer.byte('\0');
    return text;
}

char *elementText(const char *function, const XMLP_NODE *node, char *position, auto layout,
                  uint32_t depth) {
    if (node == nullptr) {
        return position;
    }
    if (position == nullptr) {
        XMLP_REPORT_FOR(function, "buf is null.");
        return nullptr;
    }
    Writer writer(position);
    putElement(writer, layout, node, depth);
    return writer.position();
}

} // namespace
} // namespace velda::xmlp

using namespace velda::xmlp;

char *_tree2Xml(const XMLP_NODE *node, char *position) {
    return elementText(__func__, node, position, Compact{}, 0);
}

char *_tree2FormatXml(const XMLP_NODE *node, char *position, uint32_t depth) {
    return elementText(__func__, node, position, Indented{}, depth);
}

char *xmlp_tree2Xml(const XMLP_DOC *doc, uint32_t isCompact, uint32_t *length) {
    if (doc == nullptr || length == nullptr || doc->tree == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    return isCompact != 0 ? documentText(__func__, doc->tree, Compact{}, length)
                          : documentText(__func__, doc->tree, Indented{}, length);
}

char *xmlp_dumpDoc(XMLP_DOC *doc, uint32_t isCompact, uint32_t *length) {
    if (doc == nullptr || length == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    const DocumentLock lock(doc);
    return xmlp_tree2Xml(doc, isCompact, length);
}
