// From the database text to the filled model: parse, count, allocate, fill.

#include "appmngr/elements.h"

#include <climits>
#include <cstring>
#include <memory>

namespace {

struct ReleaseDoc {
    void operator()(XMLP_DOC *doc) const { xmlp_releaseDoc(doc); }
};

using OwnedDoc = std::unique_ptr<XMLP_DOC, ReleaseDoc>;

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

// A text ends at its first NUL, however long it was in the image. The parser skips a mark of UTF-8 once more, so
// that a declaration may come after two of them.
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

void fillModel(XMLP_NODE *root) {
    const velda::appmngr::ElementCacheScope cache;
    appmngr_setHandlerInfo(g_appmngr_nodeHandlers);
    appmngr_xmlnode_handler(root, nullptr);
    appmngr_setHandlerInfo(nullptr);
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

    fillModel(root);
    g_appmngr_appDb.ruleCount = g_appmngr_counter.ruleIdx;
    g_appmngr_appDb.appTypeCount = g_appmngr_counter.appTypeIdx;
    g_appmngr_appDb.appCount = g_appmngr_counter.appIdx;
    return 0;
}
