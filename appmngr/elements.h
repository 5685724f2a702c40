// The vocabulary of the database document: one table, from which all that depends on an element's name
// is made.
#pragma once

#include "appmngr/appmngr_internal.h"

#include <cstddef>
#include <iterator>

namespace velda::appmngr {

enum class Kind : uint8_t { container, integer, string, tuple };

// Where a leaf is stored in the record that its handler chooses. Of an element that two kinds of
// records have, the first offset is an application's and the second one a type's.
struct Field {
    uint16_t offsets[2];
    uint16_t size; // of a string, its terminator included; 0 for what is stored otherwise
};

// One row for each element; no name stands twice. Its columns:
//   name         ignoring ASCII case
//   handler      of the functions _appmngr_xmlnode_handler_...
//   kind         what it holds
//   field        where that is stored
//   repetition   whether a parent may have more than one without the last one replacing the others
//   context      where its handler acts (context.h)
//   parents      where the format has it; several, where they differ in nothing but their record
//
// What the counting pass counts and goes through is what acts inCountedPath, and its path is made of
// the first parents from here up to the document.
// clang-format off
#define DATABASE_ELEMENTS(ROW)                                                                                   \
    ROW(AppDB,       pass,        container, NO_FIELD,                   many, any,           document)          \
    ROW(ver,         ver,         string,    FIELD(APPDB, ver),          once, any,           AppDB)             \
    ROW(proModel,    proModel,    string,    FIELD(APPDB, proModel),     once, any,           AppDB)             \
    ROW(expired,     expired,     string,    FIELD(APPDB, expired),      once, any,           AppDB)             \
    ROW(appList,     appList,     container, NO_FIELD,                   many, inCountedPath, AppDB)             \
    ROW(app,         app,         container, NO_FIELD,                   many, inCountedPath, appList)           \
    ROW(id,          id,          integer,   FIELDS(APP, APPTYPE, id),   once, inCountedPath, app, appType)      \
    ROW(name,        name,        string,    FIELDS(APP, APPTYPE, name), once, inRecord,      app, appType)      \
    ROW(visible,     visible,     integer,   FIELD(APP, visible),        once, inApp,         app)               \
    ROW(typeIdList,  pass,        container, NO_FIELD,                   many, any,           app)               \
    ROW(typeId,      typeid,      integer,   NO_FIELD,                   many, inApp,         typeIdList)        \
    ROW(ruleList,    pass,        container, NO_FIELD,                   many, inCountedPath, app)               \
    ROW(rule,        rule,        container, NO_FIELD,                   many, inCountedPath, ruleList)          \
    ROW(tupleList,   pass,        container, NO_FIELD,                   many, inCountedPath, rule)              \
    ROW(tuple,       tuple,       tuple,     TEXT(APPMNGR_TUPLE_SIZE),   many, inCountedPath, tupleList)         \
    ROW(ori,         ori,         container, NO_FIELD,                   many, any,           rule)              \
    ROW(rep,         rep,         container, NO_FIELD,                   many, any,           rule)              \
    ROW(enable,      enable,      integer,   FIELD(FEATURE, enable),     once, inDirection,   ori, rep, segment) \
    ROW(segment,     pass,        container, NO_FIELD,                   many, any,           ori, rep, segment) \
    ROW(start,       start,       integer,   FIELD(FEATURE, start),      once, inDirection,   ori, rep, segment) \
    ROW(end,         end,         integer,   FIELD(FEATURE, end),        once, inDirection,   ori, rep, segment) \
    ROW(minlength,   minlength,   integer,   FIELD(FEATURE, minlength),  once, inDirection,   ori, rep, segment) \
    ROW(dpiType,     dpiType,     string,    FIELD(FEATURE, dpiType),    once, inDirection,   ori, rep, segment) \
    ROW(dpiCode,     dpiCode,     string,    FIELD(FEATURE, dpiCode),    once, inDirection,   ori, rep, segment) \
    ROW(appTypeList, appTypeList, container, NO_FIELD,                   many, inCountedPath, AppDB)             \
    ROW(appType,     appType,     container, NO_FIELD,                   many, inCountedPath, appTypeList)       \
    ROW(dnsKwList,   pass,        container, NO_FIELD,                   many, inCountedPath, app)               \
    ROW(dnsKw,       dnsKw,       string,    FIELD(DNS_RULE, dnsKw),     many, inCountedPath, dnsKwList)
// clang-format on

#define ELEMENT_OF_ROW(name, ...) name,
// Which row of the table and of g_appmngr_nodeHandlers; `document` stands for the parent of what is on
// top, and is no row.
enum class Element : uint32_t { DATABASE_ELEMENTS(ELEMENT_OF_ROW) unknown, document };
#undef ELEMENT_OF_ROW

enum class Context : uint8_t { any, inCountedPath, inRecord, inApp, inDirection };

struct ElementInfo {
    const char *name;
    Kind kind;
    Field field;
    bool isRepeatable;
    Context context;
    uint8_t parentCount;
    Element parents[3];
};

namespace detail {

constexpr bool once = false;
constexpr bool many = true;

template <class... Parents>
constexpr ElementInfo makeInfo(const char *name, Kind kind, Field field, bool isRepeatable,
                               Context context, Parents... parents) {
    return {name, kind, field, isRepeatable, context, sizeof...(parents), {parents...}};
}

struct ElementTable {
    ElementInfo rows[static_cast<uint32_t>(Element::unknown) + 1];
};

constexpr ElementTable makeTable() {
    using enum Element;
#define NO_FIELD \
    Field {}
#define TEXT(size) \
    Field {        \
        {}, size   \
    }
#define FIELDS(app, type, member)                                            \
    Field {                                                                  \
        {offsetof(APPMNGR_##app, member), offsetof(APPMNGR_##type, member)}, \
            sizeof(APPMNGR_##app::member)                                    \
    }
#define FIELD(record, member) FIELDS(record, record, member)
#define INFO_OF_ROW(name, handler, kind, field, repetition, context, ...) \
    makeInfo(#name, Kind::kind, field, repetition, Context::context, __VA_ARGS__),
    return {{DATABASE_ELEMENTS(INFO_OF_ROW) makeInfo("", Kind::container, {}, many, Context::any)}};
#undef NO_FIELD
#undef TEXT
#undef FIELDS
#undef FIELD
#undef INFO_OF_ROW
}

} // namespace detail

inline constexpr detail::ElementTable elementTable = detail::makeTable();

constexpr const ElementInfo &infoOf(Element element) {
    return elementTable.rows[static_cast<uint32_t>(element)];
}

// An address of a name, and the element that it was looked up as.
struct ElementCacheEntry {
    const char *address;
    Element element;
};

// Direct-mapped: each address has one entry, which another one may replace; the names of a static tree
// lie close together at multiples of four. Empty outside an ElementCacheScope.
extern ElementCacheEntry elementCache[64];

// The element of a name that is not in its entry.
Element lookUpElement(const char *name, ElementCacheEntry &entry);

inline Element elementOf(const XMLP_NODE *node) {
    const char *name = node->name;
    ElementCacheEntry &entry =
        elementCache[reinterpret_cast<uintptr_t>(name) / 4 % std::size(elementCache)];
    return entry.address == name && name != nullptr ? entry.element : lookUpElement(name, entry);
}

inline bool isA(const XMLP_NODE *node, Element element) {
    return node != nullptr && elementOf(node) == element;
}

// On top of a tree; also what was never linked into one.
inline bool isTop(const XMLP_NODE *node) {
    return node->parent == nullptr || node->parent->name == nullptr;
}

// While one of these lives, all elements are those of one tree that nobody changes, so that the address
// of a name tells its element. In a static tree, which keeps equal names at one address, each name is
// then looked up once.
class ElementCacheScope {
public:
    ElementCacheScope();
    ~ElementCacheScope();
    ElementCacheScope(const ElementCacheScope &) = delete;
    ElementCacheScope &operator=(const ElementCacheScope &) = delete;
};

} // namespace velda::appmngr
