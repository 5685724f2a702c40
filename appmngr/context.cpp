#include "appmngr/context.h"

#include "appmngr/walk.h"

#include <algorithm>

namespace velda::appmngr {

namespace {

// Looked up for every element, so kept apart from the wide rows of the table. `id` is counted with the
// type around it.
struct CountedParents {
    Element of[std::size(elementTable.rows)];
};

constexpr CountedParents findCountedParents() {
    CountedParents parents = {};
    for (size_t i = 0; i < std::size(parents.of); ++i) {
        const ElementInfo &info = elementTable.rows[i];
        const bool isCounted = info.context == Context::inCountedPath && info.parentCount == 1;
        parents.of[i] = isCounted ? info.parents[0] : Element::unknown;
    }
    return parents;
}

constexpr CountedParents countedParents = findCountedParents();

Element countedParent(Element element) {
    return countedParents.of[static_cast<uint32_t>(element)];
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
                            (element == Element::AppDB && around == Scope::any);
    return isDatabase ? Scope::database : around;
}

Scope scopeAround(const XMLP_NODE *node) {
    if (node == nullptr) {
        return Scope::any;
    }
    if (const Surroundings *known = surroundingsIn(node->parent)) {
        return known->scope;
    }
    Scope scope = Scope::any;
    for (const XMLP_NODE *above = node->parent; above != nullptr; above = above->parent) {
        const Scope inside = scopeIn(above, Scope::any);
        if (inside != Scope::any && !isA(above, Element::AppDB)) {
            return inside; // the innermost list or record
        }
        scope = inside != Scope::any ? inside : scope;
    }
    return scope;
}

// As far up as the tree goes. A tree in which something was counted has the whole path; a caller's may
// begin further down.
bool inCountedPath(const XMLP_NODE *node) {
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
    return isTag(param) && scopeAround(node) != Scope::database;
}

bool inApp(const XMLP_NODE *node) {
    const Scope scope = scopeAround(node);
    return scope == Scope::app || scope == Scope::any;
}

bool inDirection(const XMLP_NODE *node, const void *param) {
    return isTag(param) && inApp(node);
}

bool isValidContext(Element element, const XMLP_NODE *node, const void *param) {
    switch (infoOf(element).context) {
    case Context::any:
        break;
    case Context::inCountedPath:
        return inCountedPath(node);
    case Context::inRecord:
        return inRecord(node, param);
    case Context::inApp:
        return inApp(node);
    case Context::inDirection:
        return inDirection(node, param);
    }
    return true;
}

bool hasValidParent(Element element, const XMLP_NODE *node) {
    const ElementInfo &info = infoOf(element);
    const Element parent = isTop(node) ? Element::document : elementOf(node->parent);
    return std::find(info.parents, info.parents + info.parentCount, parent) !=
           info.parents + info.parentCount;
}

} // namespace velda::appmngr
