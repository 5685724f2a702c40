// The handlers of the database document's elements, and finding elements by names.

#include "appmngr/elements.h"

#include <algorithm>

#define HANDLER_ROW(name, handler, ...) {#name, _appmngr_xmlnode_handler_##handler},
const APPMNGR_HANDLER_INFO g_appmngr_nodeHandlers[] = {
    DATABASE_ELEMENTS(HANDLER_ROW){nullptr, nullptr},
};
#undef HANDLER_ROW

namespace velda::appmngr {

namespace {

constinit bool isCacheInUse = false;

Element findElement(const char *name) {
    uint32_t row = 0;
    while (g_appmngr_nodeHandlers[row].name != nullptr &&
           appmngr_string_safeCaseCmp(g_appmngr_nodeHandlers[row].name, name) != 0) {
        ++row;
    }
    return static_cast<Element>(row);
}

} // namespace

constinit ElementCacheEntry elementCache[64] = {};

Element lookUpElement(const char *name, ElementCacheEntry &entry) {
    const Element element = findElement(name);
    if (isCacheInUse) {
        entry = {name, element};
    }
    return element;
}

ElementCacheScope::ElementCacheScope() {
    isCacheInUse = true;
}

ElementCacheScope::~ElementCacheScope() {
    isCacheInUse = false;
    std::fill(std::begin(elementCache), std::end(elementCache), ElementCacheEntry{});
}

} // namespace velda::appmngr
