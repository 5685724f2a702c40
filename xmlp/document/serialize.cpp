// Trees written back as text, compact or indented, in the form that devices know.

#include "xmlp/base/entities.h"
#include "xmlp/base/memory.h"
#include "xmlp/base/report.h"
#include "xmlp/document/frame.h"
#include "xmlp/document/tree_writer.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>
#include <string_view>

namespace velda::xmlp {
namespace {

// An element up to its first child: all of it where it has none.
void putOpening(auto &sink, auto layout, const XMLP_NODE *node, uint32_t depth) {
    const std::string_view name = textOrNothing(node->name);
    layout.indent(sink, depth);
    sink.put("<");
    sink.put(name);
    putAttributes(sink, node);
    if (node->firstChild != nullptr) {
        sink.put(">");
    } else if (node->valueSize != 0) {
        sink.put(">");
        escape({node->value, node->valueSize}, [&sink](std::string_view part) { sink.put(part); });
        putClosingTag(sink, name);
    } else {
        sink.put("/>");
    }
    layout.endLine(sink);
}

const auto putOpeningTag = [](auto &sink, auto layout, const XMLP_NODE *node, uint32_t depth) {
    putOpening(sink, layout, node, depth);
};

void putDocument(auto &sink, auto layout, const XMLP_TREE *tree) {
    if (tree->headerLen != 0) {
        sink.put({tree->header, tree->headerLen});
        layout.endLine(sink);
    }
    for (const XMLP_NODE *top = tree->rootNode->firstChild; top != nullptr; top = top->next) {
        sink = writeElement(sink, layout, top, 0, putOpeningTag);
    }
}

char *documentText(const char *function, const XMLP_TREE *tree, auto layout, uint32_t *length) {
    Measure measure;
    putDocument(measure, layout, tree);
    const auto bytes = CheckedSize(1).add(static_cast<size_t>(measure.length())).bytes();
    const bool isCountable = measure.length() <= UINT32_MAX;
    *length = isCountable ? static_cast<uint32_t>(measure.length()) : 0;
    char *text = isCountable && bytes ? static_cast<char *>(std::malloc(*bytes)) : nullptr;
    if (text == nullptr) {
        XMLP_REPORT_FOR(function, "malloc failed.");
        return nullptr;
    }
    Writer writer(text);
    putDocument(writer, layout, tree);
    *writer.position() = '\0';
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
    return writeElement(Writer(position), layout, node, depth, putOpeningTag).position();
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
