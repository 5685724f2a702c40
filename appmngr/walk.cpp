// The walk: every element goes to the handlers of its name, those of the database document only where
// it belongs.

#include "appmngr/elements.h"

#include <iterator>

APPMNGR_HANDLER_INFO *g_appmngr_handlerInfo;

using velda::appmngr::Element;
using velda::appmngr::elementOf;

namespace {

// Containers may nest in one another without end; real documents need eight levels.
constexpr int walkDepthMax = 64;
constinit int walkDepth = 0;

constinit APPMNGR_VISITOR chosenVisitor = nullptr;
constinit void *chosenContext = nullptr;

// ---- Where elements of the database belong ------------------------------------------------------

bool isA(const XMLP_NODE *node, Element element) {
    return node != nullptr && elementOf(node) == element;
}

bool isDocument(const XMLP_NODE *node) {
    return node != nullptr && node->parent == nullptr;
}

// The parent of an element, seen through parents of one kind that nest in one another.
const XMLP_NODE *parentBeyond(const XMLP_NODE *node, Element element) {
    const XMLP_NODE *parent = node->parent;
    while (isA(parent, element)) {
        parent = parent->parent;
    }
    return parent;
}

// Only what the counting pass counts may be filled, and it counts along exact paths. An element of
// these paths that stands elsewhere is not entered, so from the lists down a look at the parent is
// enough.

bool anywhere(const XMLP_NODE *) {
    return true;
}

bool inDatabase(const XMLP_NODE *node) {
    return isA(node->parent, Element::AppDB) && isDocument(node->parent->parent);
}

bool inAppList(const XMLP_NODE *node) {
    return isA(node->parent, Element::appList);
}

bool inAppTypeList(const XMLP_NODE *node) {
    return isA(node->parent, Element::appTypeList);
}

bool inApp(const XMLP_NODE *node) {
    return isA(node->parent, Element::app);
}

bool inAppOrType(const XMLP_NODE *node) {
    return inApp(node) || isA(node->parent, Element::appType);
}

bool inRuleList(const XMLP_NODE *node) {
    return isA(node->parent, Element::ruleList);
}

bool inRule(const XMLP_NODE *node) {
    return isA(node->parent, Element::rule);
}

bool inTupleList(const XMLP_NODE *node) {
    return isA(node->parent, Element::tupleList);
}

bool inDnsKwList(const XMLP_NODE *node) {
    return isA(node->parent, Element::dnsKwList);
}

bool inTypeIdList(const XMLP_NODE *node) {
    return isA(node->parent, Element::typeIdList) &&
           isA(parentBeyond(node, Element::typeIdList), Element::app);
}

// Features stand in a direction of a rule, or in segments within it.
bool inDirection(const XMLP_NODE *node) {
    const XMLP_NODE *direction = parentBeyond(node, Element::segment);
    return (isA(direction, Element::ori) || isA(direction, Element::rep)) && inRule(direction);
}

#define PLACE_OF_ROW(name, handler, place) place,
constexpr bool (*places[])(const XMLP_NODE *) = {DATABASE_ELEMENTS(PLACE_OF_ROW)};
#undef PLACE_OF_ROW

bool belongs(uint32_t row, const XMLP_NODE *node) {
    return row < std::size(places) && places[row](node);
}

// ---- Handing out elements -----------------------------------------------------------------------

void tellVisitor(const XMLP_NODE *node, APPMNGR_VISIT visit) {
    if (chosenVisitor != nullptr) {
        chosenVisitor(node, visit, chosenContext);
    }
}

inline void visitElement(XMLP_NODE *node, void *param) {
    const Element element = elementOf(node);
    const auto row = static_cast<uint32_t>(element);
    if (belongs(row, node)) {
        tellVisitor(node, APPMNGR_VISIT_TAKEN);
        g_appmngr_nodeHandlers[row].handler(node, param);
    } else {
        tellVisitor(node,
                    element == Element::unknown ? APPMNGR_VISIT_UNKNOWN : APPMNGR_VISIT_MISPLACED);
    }
}

void visitByTable(const APPMNGR_HANDLER_INFO *table, XMLP_NODE *node, void *param) {
    for (const APPMNGR_HANDLER_INFO *row = table; row->name != nullptr; ++row) {
        if (row->handler != nullptr && appmngr_string_safeCaseCmp(row->name, node->name) == 0) {
            row->handler(node, param);
        }
    }
}

inline int visit(XMLP_NODE *node, void *param) {
    if (node->type == XMLP_TYPE_NONE) {
        tellVisitor(node, APPMNGR_VISIT_EMPTY);
        return 0;
    }
    const APPMNGR_HANDLER_INFO *table = g_appmngr_handlerInfo;
    if (table == nullptr) {
        appmngr_report("appmngr_childnode_handler", 1894, "Null pHandlerInfo\n");
        return -1;
    }
    if (table == g_appmngr_nodeHandlers) {
        visitElement(node, param);
    } else {
        visitByTable(table, node, param);
    }
    return 0;
}

} // namespace

int _appmngr_belongs(uint32_t row, const XMLP_NODE *node) {
    return belongs(row, node) ? 1 : 0;
}

void appmngr_setVisitor(APPMNGR_VISITOR visitor, void *context) {
    chosenVisitor = visitor;
    chosenContext = context;
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
        if (visit(child, param) != 0) {
            break;
        }
    }
    --walkDepth;
    return 0;
}

int appmngr_childnode_handler(XMLP_NODE *node, void *param) {
    return node == nullptr ? 0 : visit(node, param);
}
