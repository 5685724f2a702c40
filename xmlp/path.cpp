// Finding elements by slash paths.

#include "xmlp/report.h"
#include "xmlp/xmlp.h"

#include <cstring>

XMLP_NODE *xmlp_seekXml(const XMLP_DOC *doc, const char *path) {
    if (doc == nullptr || doc->tree == nullptr || path == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    if (path[0] != '/') {
        return nullptr;
    }
    XMLP_NODE *node = doc->tree->rootNode;
    if (path[1] == '\0') {
        return node;
    }
    while (node != nullptr && *path == '/') {
        const char *name = path + 1;
        const auto length = static_cast<uint32_t>(std::strcspn(name, "/"));
        node = xmlp_getChildNodeByName(node, name, length);
        path = name + length;
    }
    return node;
}
