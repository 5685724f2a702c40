// The rule that makes an element named "item" a list member.

#include "xmlp/base/report.h"
#include "xmlp/xmlp_internal.h"

#include <cstdlib>
#include <cstring>

int _setType(XMLP_NODE *node, uint32_t isStatic) {
    if (node == nullptr || node->parent == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    XMLP_NODE *parent = node->parent;
    const bool isItem = node->name != nullptr && std::strcmp(node->name, g_xmlp_itemName) == 0;
    const uint32_t parentType = isItem ? XMLP_TYPE_LIST : XMLP_TYPE_BRANCH;
    if (parent->type != XMLP_TYPE_NONE && parent->type != parentType) {
        if (isItem) {
            XMLP_REPORT("single element is named item.");
        } else {
            XMLP_REPORT("tag name is not item.");
        }
        return -1;
    }
    parent->type = parentType;
    if (isItem) {
        node->type = XMLP_TYPE_ITEM;
        if (isStatic == 0 && node->name != g_xmlp_itemName) {
            std::free(node->name);
            node->name = g_xmlp_itemName;
        }
    }
    return 0;
}
