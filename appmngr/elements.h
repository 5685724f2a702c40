// The vocabulary of the database document.
#pragma once

#include "appmngr/appmngr_internal.h"

#include <iterator>

namespace velda::appmngr {

// Every element of the document: its name, its handler and where it belongs. No name stands twice.
#define DATABASE_ELEMENTS(ROW)                \
    ROW(AppDB, pass, anywhere)                \
    ROW(ver, ver, anywhere)                   \
    ROW(proModel, proModel, anywhere)         \
    ROW(expired, expired, anywhere)           \
    ROW(appList, appList, inDatabase)         \
    ROW(app, app, inAppList)                  \
    ROW(id, id, inAppOrType)                  \
    ROW(name, name, inAppOrType)              \
    ROW(visible, visible, inApp)              \
    ROW(typeIdList, pass, anywhere)           \
    ROW(typeId, typeid, inTypeIdList)         \
    ROW(ruleList, pass, inApp)                \
    ROW(rule, rule, inRuleList)               \
    ROW(tupleList, pass, inRule)              \
    ROW(tuple, tuple, inTupleList)            \
    ROW(ori, ori, anywhere)                   \
    ROW(rep, rep, anywhere)                   \
    ROW(enable, enable, inDirection)          \
    ROW(segment, pass, anywhere)              \
    ROW(start, start, inDirection)            \
    ROW(end, end, inDirection)                \
    ROW(minlength, minlength, inDirection)    \
    ROW(dpiType, dpiType, inDirection)        \
    ROW(dpiCode, dpiCode, inDirection)        \
    ROW(appTypeList, appTypeList, inDatabase) \
    ROW(appType, appType, inAppTypeList)      \
    ROW(dnsKwList, pass, inApp)               \
    ROW(dnsKw, dnsKw, inDnsKwList)

#define ELEMENT_OF_ROW(name, handler, place) name,
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
