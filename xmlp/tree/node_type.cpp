// The rule that makes an element named "item" a list member.

#include "xmlp/tree/node_type.h"

#include "xmlp/base/diagnosis.h"
#include "xmlp/xmlp_internal.h"

#include <cstdlib>
#include <cstring>

namespace velda::xmlp {

XMLP_ERROR_CODE setType(XMLP_NODE &node, bool isStatic) {
    XMLP_NODE *parent = node.parent;
    const bool isItem = node.name != nullptr && std::strcmp(node.name, g_xmlp_itemName) == 0;
    const uint32_t parentType = isItem ? XMLP_TYPE_LIST : XMLP_TYPE_BRANCH;
    if (parent->type != XMLP_TYPE_NONE && parent->type != parentType) {
        return isItem ? XMLP_ERROR_SINGLE_ITEM : XMLP_ERROR_NOT_ITEM;
    }
    parent->type = parentType;
    if (isItem) {
        node.type = XMLP_TYPE_ITEM;
        if (!isStatic && node.name != g_xmlp_itemName) {
            std::free(node.name);
            node.name = g_xmlp_itemName;
        }
    }
    return XMLP_ERROR_NONE;
}

} // namespace velda::xmlp

using namespace velda::xmlp;

int _setType(XMLP_NODE *node, uint32_t isStatic) {
    if (node == nullptr || node->parent == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    const XMLP_ERROR_CODE error = setType(*node, isStatic != 0);
    if (error != XMLP_ERROR_NONE) {
        XMLP_REPORT("%s", messageOf(error));
        return -1;
    }
    return 0;
}
