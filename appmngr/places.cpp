#include "appmngr/places.h"

#include "appmngr/walk.h"

namespace velda::appmngr {

namespace {

#define PARENT_OF_ROW(name, handler, place, parent) Element::parent,
constexpr Element countedParents[] = {DATABASE_ELEMENTS(PARENT_OF_ROW) Element::unknown};
#undef PARENT_OF_ROW

Element countedParent(Element element) {
    return countedParents[static_cast<uint32_t>(element)];
}

// What stands directly in a tree; also what was never linked into one.
bool isTop(const XMLP_NODE *node) {
    return node->parent == nullptr || node->parent->name == nullptr;
}

} // namespace

bool isCounted(Element element) {
    return countedParent(element) != Element::unknown;
}

Scope scopeIn(const XMLP_NODE *node, Scope around) {
    const Element element = node != nullptr ? elementOf(node) : Element::unknown;
    if (element == Element::app) {
        return Scope::app;
    }
    if (element == Element::appType) {
        return Scope::appType;
    }
    const bool isDatabase = element == Element::appList || element == Element::appTypeList ||
                            (element == Element::AppDB && around == Scope::anywhere);
    return isDatabase ? Scope::database : around;
}

Scope scopeAround(const XMLP_NODE *node) {
    if (node == nullptr) {
        return Scope::anywhere;
    }
    if (const Surroundings *known = surroundingsIn(node->parent)) {
        return known->scope;
    }
    Scope scope = Scope::anywhere;
    for (const XMLP_NODE *above = node->parent; above != nullptr; above = above->parent) {
        const Scope inside = scopeIn(above, Scope::anywhere);
        if (inside != Scope::anywhere && !isA(above, Element::AppDB)) {
            return inside; // the innermost list or record
        }
        scope = inside != Scope::anywhere ? inside : scope;
    }
    return scope;
}

bool anywhere(const XMLP_NODE *, const void *) {
    return true;
}

// As far up as the tree goes. A tree in which something was counted has the whole path; a caller's may
// begin further down.
bool whereCounted(const XMLP_NODE *node, const void *) {
    if (node == nullptr) {
        return true;
    }
    Element element = elementOf(node);
    if (element == Element::id && !isTop(node)) {
        const Surroundings *known = surroundingsIn(node->parent);
        node = node->parent;
        element = elementOf(node);
        if (element != Element::app && element != Element::appType) {
            return false;
        }
        if (known != nullptr && known->isCounted) {
            return true;
        }
    }
    if (!isCounted(element)) {
        return true;
    }
    if (const Surroundings *known = surroundingsIn(node->parent);
        known != nullptr && known->isCounted) {
        return isA(node->parent, countedParent(element));
    }
    for (; !isTop(node); node = node->parent) {
        element = countedParent(element);
        if (element == Element::unknown || !isA(node->parent, element)) {
            return false;
        }
    }
    return true;
}

bool inRecord(const XMLP_NODE *node, const void *param) {
    return isSelector(param) && scopeAround(node) != Scope::database;
}

bool inApp(const XMLP_NODE *node, const void *) {
    const Scope scope = scopeAround(node);
    return scope == Scope::app || scope == Scope::anywhere;
}

bool inDirection(const XMLP_NODE *node, const void *param) {
    return isSelector(param) && inApp(node);
}

#define PLACE_OF_ROW(name, handler, place, parent) place,
bool acts(Element element, const XMLP_NODE *node, const void *param) {
    static constexpr bool (*places[])(const XMLP_NODE *,
                                      const void *) = {DATABASE_ELEMENTS(PLACE_OF_ROW) anywhere};
    return places[static_cast<uint32_t>(element)](node, param);
}
#undef PLACE_OF_ROW

} // namespace velda::appmngr
