// From the database text to the filled model: parse, count, allocate, and the walk that gives every
// element to the handler of its name.

#include "appmngr/appmngr_internal.h"

#include <climits>
#include <cstring>
#include <memory>

APPMNGR_HANDLER_INFO *g_appmngr_handlerInfo;

namespace {

struct ReleaseDoc {
    void operator()(XMLP_DOC *doc) const { xmlp_releaseDoc(doc); }
};

using OwnedDoc = std::unique_ptr<XMLP_DOC, ReleaseDoc>;

// Containers may nest in one another without end; real documents need eight levels.
constexpr int walkDepthMax = 64;
constinit int walkDepth = 0;

size_t byteOrderMarkLength(const char *text, size_t length) {
    const int known = length < INT_MAX ? static_cast<int>(length) : INT_MAX;
    switch (appmngr_getBomType(reinterpret_cast<const unsigned char *>(text), known)) {
    case 1:
        return 3;
    case 2:
    case 3:
        return 2;
    default:
        return 0;
    }
}

OwnedDoc parseText(const char *text) {
    if (text == nullptr) {
        return OwnedDoc(xmlp_loadDoc(nullptr, 0, 1));
    }
    const size_t length = std::strlen(text);
    const size_t skipped = byteOrderMarkLength(text, length);
    return OwnedDoc(xmlp_loadDoc(text + skipped, static_cast<uint32_t>(length - skipped), 1));
}

// Types are found by their identifiers during the walk, so these are known before it starts: an
// application may name a type that comes later in the document.
void seedAppTypeIds() {
    for (uint32_t i = 0; i < g_appmngr_appDb.appTypeCount; ++i) {
        g_appmngr_appDb.appType[i].id = g_appmngr_appTypeId[i];
    }
}

} // namespace

int appmngr_getBomType(const unsigned char *text, int len) {
    if (text == nullptr || len < 2) {
        return 0;
    }
    if (text[0] == 0xFF && text[1] == 0xFE) {
        return 2;
    }
    if (text[0] == 0xFE && text[1] == 0xFF) {
        return 3;
    }
    if (len > 2 && text[0] == 0xEF && text[1] == 0xBB && text[2] == 0xBF) {
        return 1;
    }
    return 0;
}

int appmngr_analyzeDbFile(void) {
    const OwnedDoc doc = parseText(g_appmngr_appDbXml);
    if (doc == nullptr) {
        return -1;
    }
    XMLP_NODE *root = doc->tree->rootNode;
    _appmngr_free_for_appdb();
    appmngr_parseThroughXML("root", root);
    if (_appmngr_alloc_for_appdb() != 0) {
        appmngr_report(__func__, 2325, "_appmngr_alloc_for_appdb failed\n");
        return -1;
    }
    seedAppTypeIds();

    appmngr_setHandlerInfo(g_appmngr_nodeHandlers);
    appmngr_xmlnode_handler(root, nullptr);
    appmngr_setHandlerInfo(nullptr);

    g_appmngr_appDb.ruleCount = g_appmngr_counter.ruleIdx;
    g_appmngr_appDb.appTypeCount = g_appmngr_counter.appTypeIdx;
    g_appmngr_appDb.appCount = g_appmngr_counter.appIdx;
    return 0;
}

int appmngr_setHandlerInfo(const APPMNGR_HANDLER_INFO *table) {
    // Nothing here writes to a table; the getter's type is the one that callers know.
    g_appmngr_handlerInfo = const_cast<APPMNGR_HANDLER_INFO *>(table);
    return 0;
}

APPMNGR_HANDLER_INFO *appmngr_getHandlerInfo(void) {
    return g_appmngr_handlerInfo;
}

int appmngr_xmlnode_handler(XMLP_NODE *node, void *param) {
    if (walkDepth == walkDepthMax) {
        return 0;
    }
    ++walkDepth;
    for (XMLP_NODE *child = xmlp_getChildNode(node, 0); child != nullptr; child = child->next) {
        if (appmngr_childnode_handler(child, param) != 0) {
            break;
        }
    }
    --walkDepth;
    return 0;
}

int appmngr_childnode_handler(XMLP_NODE *node, void *param) {
    if (node == nullptr || node->type == XMLP_TYPE_NONE) {
        return 0;
    }
    const APPMNGR_HANDLER_INFO *table = appmngr_getHandlerInfo();
    if (table == nullptr) {
        appmngr_report(__func__, 1894, "Null pHandlerInfo\n");
        return -1;
    }
    for (uint32_t row = 0; table[row].name != nullptr; ++row) {
        const APPMNGR_HANDLER_INFO &info = table[row];
        if (info.handler != nullptr && appmngr_string_safeCaseCmp(info.name, node->name) == 0 &&
            (table != g_appmngr_nodeHandlers || _appmngr_belongs(row, node) != 0)) {
            info.handler(node, param);
        }
    }
    return 0;
}
