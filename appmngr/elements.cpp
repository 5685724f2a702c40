// The vocabulary of the database document: its rows, and finding them by names.

#include "appmngr/elements.h"

#include <algorithm>

#define HANDLER_ROW(name, handler, place, parent) {#name, _appmngr_xmlnode_handler_##handler},
const APPMNGR_HANDLER_INFO g_appmngr_nodeHandlers[] = {
    DATABASE_ELEMENTS(HANDLER_ROW){nullptr, nullptr},
};
#undef HANDLER_ROW

namespace velda::appmngr {

namespace {

constinit bool areAddressesKnown = false;

Element findElement(const char *name) {
    uint32_t row = 0;
    while (g_appmngr_nodeHandlers[row].name != nullptr &&
           appmngr_string_safeCaseCmp(g_appmngr_nodeHandlers[row].name, name) != 0) {
        ++row;
    }
    return static_cast<Element>(row);
}

} // namespace

constinit AddressedElement elementsByAddress[64] = {};

Element lookUpElement(const char *name, AddressedElement &slot) {
    const Element element = findElement(name);
    if (areAddressesKnown) {
        slot = {name, element};
    }
    return element;
}

KnownAddresses::KnownAddresses() {
    areAddressesKnown = true;
}

KnownAddresses::~KnownAddresses() {
    areAddressesKnown = false;
    std::fill(std::begin(elementsByAddress), std::end(elementsByAddress), AddressedElement{});
}

} // namespace velda::appmngr
