// Elements named by slash paths, and the calls that read and change a document through them.

#include "xmlp/base/memory.h"
#include "xmlp/document/frame.h"
#include "xmlp/document/value_copy.h"
#include "xmlp/tree/attr_list.h"
#include "xmlp/tree/owned_node.h"

#include <cstring>

using namespace velda::xmlp;

namespace {

OwnedNode makeNode(const char *name, const XMLP_VALUE *value, const XMLP_ATTR_PAIR *attrs,
                   uint32_t attrCount) {
    OwnedNode node(xmlp_initNode());
    if (node == nullptr || xmlp_setNodeName(node.get(), name) != 0) {
        return nullptr;
    }
    if (value != nullptr) {
        if (xmlp_setNodeValue(node.get(), value->value, value->valueSize) != 0) {
            return nullptr;
        }
        node->type = XMLP_TYPE_LEAF;
    }
    if (attrs != nullptr && attrCount > 0 && !addAttrs(node.get(), attrs, attrCount)) {
        return nullptr;
    }
    return node;
}

} // namespace

XMLP_NODE *xmlp_seekXml(const XMLP_DOC *doc, const char *path) {
    if (doc == nullptr || doc->tree == nullptr || path == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    if (path[0] != '/') {
        return nullptr;
    }
    XMLP_NODE *node = doc->tree->rootNode;
    if (path[1] == '\0') {
        return node;
    }
    while (node != nullptr && *path == '/') {
        const char *name = path + 1;
        const auto length = static_cast<uint32_t>(std::strcspn(name, "/"));
        node = xmlp_getChildNodeByName(node, name, length);
        path = name + length;
    }
    return node;
}

int xmlp_isExist(XMLP_DOC *doc, const char *path) {
    if (doc == nullptr || path == nullptr) {
        XMLP_REPORT("invalid params.");
        return 0;
    }
    return xmlp_seekXml(doc, path) != nullptr ? 1 : 0;
}

XMLP_VALUE *xmlp_getValue(XMLP_DOC *doc, const char *path) {
    const Call call = {__func__, Access::read, doc, path};
    return onNodeOf({XMLP_TYPE_LEAF, XMLP_TYPE_NONE}, call, static_cast<XMLP_VALUE *>(nullptr),
                    [&call](const XMLP_NODE *node) -> XMLP_VALUE * {
                        auto value = allocate<XMLP_VALUE>(sizeof(XMLP_VALUE));
                        if (value == nullptr || !copyValue(*node, Terminator::added, *value)) {
                            XMLP_REPORT_FOR(call.function, "malloc failed.");
                            return nullptr;
                        }
                        return value.release();
                    });
}

int xmlp_setValue(XMLP_DOC *doc, const char *path, const void *value, uint32_t valueSize) {
    return onNodeOf({XMLP_TYPE_LEAF}, {__func__, Access::change, doc, path}, -1,
                    [&](XMLP_NODE *node) { return xmlp_setNodeValue(node, value, valueSize); });
}

int xmlp_setName(XMLP_DOC *doc, const char *path, const char *name) {
    return onNode({__func__, Access::change, doc, path, name != nullptr}, -1,
                  [&](XMLP_NODE *node) { return xmlp_setNodeName(node, name); });
}

int xmlp_add(XMLP_DOC *doc, const char *path, uint32_t position, const char *name,
             const XMLP_VALUE *value, const XMLP_ATTR_PAIR *attrs, uint32_t attrCount) {
    return onNodeOf(
        {XMLP_TYPE_NONE, XMLP_TYPE_BRANCH}, {__func__, Access::change, doc, path, name != nullptr},
        -1, [&](XMLP_NODE *parent) {
            parent->type = XMLP_TYPE_BRANCH;
            OwnedNode node = makeNode(name, value, attrs, attrCount);
            if (node == nullptr || xmlp_addChildNode(node.get(), parent, position) != 0) {
                return -1;
            }
            static_cast<void>(node.release());
            return 0;
        });
}

uint32_t xmlp_getChildCount(XMLP_DOC *doc, const char *path) {
    return onNode({__func__, Access::read, doc, path}, uint32_t{0}, xmlp_getChildNodeCount);
}

int xmlp_delete(XMLP_DOC *doc, const char *path) {
    const Call call = {__func__, Access::change, doc, path};
    return onNode(call, -1, [&call](XMLP_NODE *node) {
        if (node == call.doc->tree->rootNode) {
            XMLP_REPORT_FOR(call.function, "not allow to delete root node.");
            return -1;
        }
        xmlp_delDtree(node);
        return 0;
    });
}

int xmlp_getAttr(XMLP_DOC *doc, const char *path, XMLP_ATTR_PAIR *pair) {
    return onNode({__func__, Access::read, doc, path, pair != nullptr}, -1, [&](XMLP_NODE *node) {
        return xmlp_getNodeAttr(node, pair->name, &pair->value);
    });
}

int xmlp_setAttr(XMLP_DOC *doc, const char *path, const XMLP_ATTR_PAIR *pair) {
    return onNode({__func__, Access::change, doc, path, pair != nullptr}, -1,
                  [&](XMLP_NODE *node) { return xmlp_setNodeAttr(node, pair->name, pair->value); });
}

int xmlp_addAttr(XMLP_DOC *doc, const char *path, const XMLP_ATTR_PAIR *pair) {
    return onNode({__func__, Access::change, doc, path, pair != nullptr}, -1,
                  [&](XMLP_NODE *node) { return xmlp_addNodeAttr(node, pair->name, pair->value); });
}

int xmlp_deleteAttr(XMLP_DOC *doc, const char *path, const char *name) {
    return onNode({__func__, Access::change, doc, path, name != nullptr}, -1,
                  [&](XMLP_NODE *node) { return xmlp_delNodeAttr(node, name); });
}
