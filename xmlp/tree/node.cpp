// Elements: making, linking, finding, naming and giving them a text.

#include "xmlp/base/memory.h"
#include "xmlp/base/report.h"
#include "xmlp/xmlp.h"

#include <cstring>

using namespace velda::xmlp;

namespace {

char itemName[] = "item";

} // namespace

char *const g_xmlp_itemName = itemName;

XMLP_NODE *xmlp_initNode(void) {
    auto *node = static_cast<XMLP_NODE *>(std::malloc(sizeof(XMLP_NODE)));
    if (node == nullptr) {
        XMLP_REPORT("malloc failed.");
        return nullptr;
    }
    *node = XMLP_NODE{};
    return node;
}

int xmlp_insNodeFirst(XMLP_NODE *node, XMLP_NODE *parent) {
    if (node == nullptr || parent == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    XMLP_NODE *first = parent->firstChild;
    node->parent = parent;
    node->prev = nullptr;
    node->next = first;
    parent->firstChild = node;
    if (first != nullptr) {
        first->prev = node;
    } else {
        parent->lastChild = node;
    }
    return 0;
}

int xmlp_insNodeLast(XMLP_NODE *node, XMLP_NODE *parent) {
    if (node == nullptr || parent == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    XMLP_NODE *last = parent->lastChild;
    node->parent = parent;
    node->prev = last;
    node->next = nullptr;
    parent->lastChild = node;
    if (last != nullptr) {
        last->next = node;
    } else {
        parent->firstChild = node;
    }
    return 0;
}

int xmlp_insNodeAfter(XMLP_NODE *node, XMLP_NODE *sibling) {
    if (node == nullptr || sibling == nullptr || sibling->parent == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    XMLP_NODE *next = sibling->next;
    node->parent = sibling->parent;
    node->prev = sibling;
    node->next = next;
    sibling->next = node;
    if (next != nullptr) {
        next->prev = node;
    } else {
        node->parent->lastChild = node;
    }
    return 0;
}

int xmlp_insNodeBefore(XMLP_NODE *node, XMLP_NODE *sibling) {
    if (node == nullptr || sibling == nullptr || sibling->parent == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    XMLP_NODE *prev = sibling->prev;
    node->parent = sibling->parent;
    node->prev = prev;
    node->next = sibling;
    sibling->prev = node;
    if (prev != nullptr) {
        prev->next = node;
    } else {
        node->parent->firstChild = node;
    }
    return 0;
}

int xmlp_addChildNode(XMLP_NODE *node, XMLP_NODE *parent, uint32_t position) {
    if (node == nullptr || parent == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    if (position == 0) {
        return xmlp_insNodeFirst(node, parent);
    }
    if (position == XMLP_POS_LAST) {
        return xmlp_insNodeLast(node, parent);
    }
    XMLP_NODE *before = xmlp_getChildNode(parent, position - 1);
    if (before == nullptr) {
        XMLP_REPORT("child[%d] not found.", static_cast<int>(position - 1));
        return -1;
    }
    return xmlp_insNodeAfter(node, before);
}

XMLP_NODE *xmlp_getChildNode(const XMLP_NODE *parent, uint32_t index) {
    if (parent == nullptr) {
        XMLP_REPORT("parent is null.");
        return nullptr;
    }
    if (index == XMLP_POS_LAST) {
        return parent->lastChild;
    }
    XMLP_NODE *child = parent->firstChild;
    for (; child != nullptr && index > 0; --index) {
        child = child->next;
    }
    return child;
}

XMLP_NODE *xmlp_getChildNodeByName(const XMLP_NODE *parent, const char *name, uint32_t len) {
    if (parent == nullptr || name == nullptr || len == 0 || name[0] == '\0') {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    for (XMLP_NODE *child = parent->firstChild; child != nullptr; child = child->next) {
        if (child->name != nullptr && xmlp_nameCmp(name, len, child->name) == 0) {
            return child;
        }
    }
    return nullptr;
}

uint32_t xmlp_getChildNodeCount(const XMLP_NODE *node) {
    if (node == nullptr) {
        XMLP_REPORT("node is null.");
        return 0;
    }
    uint32_t count = 0;
    for (const XMLP_NODE *child = node->firstChild; child != nullptr; child = child->next) {
        ++count;
    }
    return count;
}

int xmlp_isChildNameExist(const XMLP_NODE *parent, const char *name) {
    if (parent == nullptr || name == nullptr) {
        return 0;
    }
    for (const XMLP_NODE *child = parent->firstChild; child != nullptr; child = child->next) {
        if (child->name != nullptr && std::strcmp(child->name, name) == 0) {
            return 1;
        }
    }
    return 0;
}

int xmlp_setNodeName(XMLP_NODE *node, const char *name) {
    if (node == nullptr || name == nullptr || name[0] == '\0') {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    if (xmlp_isValidName(name, static_cast<uint32_t>(std::strlen(name))) == 0) {
        XMLP_REPORT("invalid name.");
        return -1;
    }
    if (xmlp_isChildNameExist(node->parent, name) != 0) {
        XMLP_REPORT("node name existed.");
        return -1;
    }
    char *copy = strdup(name);
    if (copy == nullptr) {
        XMLP_REPORT("malloc failed.");
        return -1;
    }
    if (node->name != g_xmlp_itemName) {
        std::free(node->name);
    }
    node->name = copy;
    return 0;
}

int xmlp_setNodeValue(XMLP_NODE *pNode, const void *value, uint32_t valueSize) {
    if (pNode == nullptr) {
        XMLP_REPORT("pNode is null.");
        return -1;
    }
    if (value == nullptr && valueSize > 0) {
        XMLP_REPORT("value is null but valueSize > 0.");
        return -1;
    }
    if (value != nullptr && valueSize == 0) {
        XMLP_REPORT("value is not null but valueSize is 0.");
        return -1;
    }
    if (pNode->firstChild != nullptr) {
        XMLP_REPORT("pNode is not leaf node.");
        return -1;
    }
    Owned<char> copy;
    if (valueSize > 0) {
        copy = allocate<char>(valueSize);
        if (copy == nullptr) {
            XMLP_REPORT("malloc failed.");
            return -1;
        }
        std::memcpy(copy.get(), value, valueSize);
    }
    std::free(pNode->value);
    pNode->value = copy.release();
    pNode->valueSize = valueSize;
    return 0;
}
