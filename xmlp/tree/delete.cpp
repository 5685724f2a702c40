// Freeing elements and trees.

#include "xmlp/base/report.h"
#include "xmlp/xmlp.h"

#include <cstdlib>

namespace {

void unlink(XMLP_NODE *node) {
    if (node->prev != nullptr) {
        node->prev->next = node->next;
    } else if (node->parent != nullptr) {
        node->parent->firstChild = node->next;
    }
    if (node->next != nullptr) {
        node->next->prev = node->prev;
    } else if (node->parent != nullptr) {
        node->parent->lastChild = node->prev;
    }
}

XMLP_NODE *firstLeaf(XMLP_NODE *node) {
    while (node->firstChild != nullptr) {
        node = node->firstChild;
    }
    return node;
}

void freeNode(XMLP_NODE *node) {
    xmlp_freeAttrList(node->attrList);
    if (node->valueSize != 0) {
        std::free(node->value);
    }
    if (node->name != g_xmlp_itemName) {
        std::free(node->name);
    }
    std::free(node);
}

} // namespace

void xmlp_delNode(XMLP_NODE *node) {
    if (node == nullptr || node->firstChild != nullptr) {
        XMLP_REPORT("invalid params.");
        return;
    }
    unlink(node);
    freeNode(node);
}

// Only the top is unlinked: what goes with it is freed from the leaves upwards, each element after
// the last of its children.
void xmlp_delDtree(XMLP_NODE *node) {
    if (node == nullptr) {
        XMLP_REPORT("node is null.");
        return;
    }
    unlink(node);
    XMLP_NODE *leaf = firstLeaf(node);
    while (leaf != node) {
        XMLP_NODE *after = leaf->next != nullptr ? firstLeaf(leaf->next) : leaf->parent;
        freeNode(leaf);
        leaf = after;
    }
    freeNode(node);
}

void xmlp_delStree(XMLP_NODE *rootNode) {
    if (rootNode == nullptr) {
        XMLP_REPORT("rootNode is null.");
        return;
    }
    // The block begins with the name of the top-level element, or, without one, with the document
    // node itself.
    const XMLP_NODE *top = rootNode->firstChild;
    if (top != nullptr && top->name != nullptr) {
        std::free(top->name);
    } else {
        std::free(rootNode);
    }
}

void xmlp_destroyXmlTree(XMLP_DOC *doc) {
    if (doc == nullptr) {
        XMLP_REPORT("doc is null.");
        return;
    }
    XMLP_TREE *tree = doc->tree;
    if (tree == nullptr) {
        return;
    }
    std::free(tree->header);
    if (tree->isStatic != 0) {
        xmlp_delStree(tree->rootNode);
    } else {
        xmlp_delDtree(tree->rootNode);
    }
}
