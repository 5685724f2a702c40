// The vocabulary of the database document.
#pragma once

#include "appmngr/appmngr_internal.h"

#include <iterator>

namespace velda::appmngr {

// Every element of the document: its name, its handler, where the handler acts (places.h), and for
// those that the counting pass counts or passes through the element around them. No name stands twice.
#define DATABASE_ELEMENTS(ROW)                         \
    ROW(AppDB, pass, anywhere, unknown)                \
    ROW(ver, ver, anywhere, unknown)                   \
    ROW(proModel, proModel, anywhere, unknown)         \
    ROW(expired, expired, anywhere, unknown)           \
    ROW(appList, appList, whereCounted, AppDB)         \
    ROW(app, app, whereCounted, appList)               \
    ROW(id, id, whereCounted, unknown)                 \
    ROW(name, name, inRecord, unknown)                 \
    ROW(visible, visible, inApp, unknown)              \
    ROW(typeIdList, pass, anywhere, unknown)           \
    ROW(typeId, typeid, inApp, unknown)                \
    ROW(ruleList, pass, whereCounted, app)             \
    ROW(rule, rule, whereCounted, ruleList)            \
    ROW(tupleList, pass, whereCounted, rule)           \
    ROW(tuple, tuple, whereCounted, tupleList)         \
    ROW(ori, ori, anywhere, unknown)                   \
    ROW(rep, rep, anywhere, unknown)                   \
    ROW(enable, enable, inDirection, unknown)          \
    ROW(segment, pass, anywhere, unknown)              \
    ROW(start, start, inDirection, unknown)            \
    ROW(end, end, inDirection, unknown)                \
    ROW(minlength, minlength, inDirection, unknown)    \
    ROW(dpiType, dpiType, inDirection, unknown)        \
    ROW(dpiCode, dpiCode, inDirection, unknown)        \
    ROW(appTypeList, appTypeList, whereCounted, AppDB) \
    ROW(appType, appType, whereCounted, appTypeList)   \
    ROW(dnsKwList, pass, whereCounted, app)            \
    ROW(dnsKw, dnsKw, whereCounted, dnsKwList)

#define ELEMENT_OF_ROW(name, handler, place, parent) name,
// Which row of g_appmngr_nodeHandlers.
enum class Element : uint32_t { DATABASE_ELEMENTS(ELEMENT_OF_ROW) unknown };
#undef ELEMENT_OF_ROW

struct AddressedElement {
    const char *address;
    Element element;
};

// Each address has one slot, where another one may replace it; those of a static tree's names lie
// close together at multiples of four. Empty while no addresses are known.
extern AddressedElement elementsByAddress[64];

// The element of a name that is not in its slot.
Element lookUpElement(const char *name, AddressedElement &slot);

inline Element elementOf(const XMLP_NODE *node) {
    const char *name = node->name;
    AddressedElement &known =
        elementsByAddress[reinterpret_cast<uintptr_t>(name) / 4 % std::size(elementsByAddress)];
    return known.address == name && name != nullptr ? known.element : lookUpElement(name, known);
}

inline bool isA(const XMLP_NODE *node, Element element) {
    return node != nullptr && elementOf(node) == element;
}

// While one of these lives, all elements are those of one tree that nobody changes, so that the address
// of a name tells its element. In a static tree, which keeps equal names at one address, each name is
// then looked up once.
class KnownAddresses {
public:
    KnownAddresses();
    ~KnownAddresses();
    KnownAddresses(const KnownAddresses &) = delete;
    KnownAddresses &operator=(const KnownAddresses &) = delete;
};

} // namespace velda::appmngr
