// The editing primitives, on trees made by hand.

#include "tests/support/capture.h"
#include "tests/support/trees.h"
#include "xmlp/xmlp_internal.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

struct FreeTree {
    void operator()(XMLP_NODE *node) const { xmlp_delDtree(node); }
};

class Nodes : public testing::Test {
protected:
    XMLP_NODE *newNode(const char *name) {
        XMLP_NODE *node = xmlp_initNode();
        EXPECT_EQ(xmlp_setNodeName(node, name), 0);
        return node;
    }

    XMLP_NODE *append(const char *name) {
        XMLP_NODE *node = newNode(name);
        EXPECT_EQ(xmlp_insNodeLast(node, root_.get()), 0);
        return node;
    }

    // The children's names, after a check of all links.
    std::string children() const {
        treeText(root_.get());
        std::string names;
        for (const XMLP_NODE *child = root_->firstChild; child != nullptr; child = child->next) {
            names += child->name;
        }
        return names;
    }

    std::unique_ptr<XMLP_NODE, FreeTree> root_{xmlp_initNode()};
};

TEST_F(Nodes, AreLinkedWhereAsked) {
    XMLP_NODE *c = newNode("c");
    xmlp_insNodeFirst(c, root_.get());
    xmlp_insNodeFirst(newNode("a"), root_.get());
    xmlp_insNodeBefore(newNode("b"), c);
    xmlp_insNodeAfter(newNode("e"), c);
    xmlp_insNodeAfter(newNode("d"), c);
    xmlp_insNodeBefore(newNode("0"), root_->firstChild);
    xmlp_insNodeLast(newNode("f"), root_.get());
    EXPECT_EQ(children(), "0abcdef");
}

TEST_F(Nodes, AreAddedByPosition) {
    const struct {
        uint32_t position;
        const char *expected;
    } cases[] = {
        {0, "xab"},
        {1, "axb"},
        {2, "abx"},
        {XMLP_POS_LAST, "abx"},
    };
    append("a");
    append("b");
    for (const auto &test : cases) {
        XMLP_NODE *x = newNode("x");
        EXPECT_EQ(xmlp_addChildNode(x, root_.get(), test.position), 0);
        EXPECT_EQ(children(), test.expected);
        xmlp_delNode(x);
    }
    XMLP_NODE *x = newNode("x");
    EXPECT_EQ(linesOf([&] {
                  EXPECT_EQ(xmlp_addChildNode(x, root_.get(), 3), -1);
                  EXPECT_EQ(xmlp_addChildNode(root_.get(), x, 1), -1);
              }),
              (Lines{"xmlp_addChildNode: child[2] not found.",
                     "xmlp_addChildNode: child[0] not found."}));
    EXPECT_EQ(children(), "ab");
    xmlp_delNode(x);
}

TEST_F(Nodes, AreFound) {
    XMLP_NODE *ab = append("ab");
    XMLP_NODE *a = append("a");
    XMLP_NODE *unnamed = xmlp_initNode();
    xmlp_insNodeFirst(unnamed, root_.get());
    EXPECT_EQ(xmlp_getChildNode(root_.get(), 1), ab);
    EXPECT_EQ(xmlp_getChildNode(root_.get(), XMLP_POS_LAST), a);
    EXPECT_EQ(xmlp_getChildNode(root_.get(), 3), nullptr);
    EXPECT_EQ(xmlp_getChildNodeByName(root_.get(), "ab", 1), a);
    EXPECT_EQ(xmlp_getChildNodeByName(root_.get(), "abc", 2), ab);
    EXPECT_EQ(xmlp_getChildNodeByName(root_.get(), "abc", 3), nullptr);
    EXPECT_EQ(xmlp_getChildNodeCount(root_.get()), 3u);
    EXPECT_EQ(xmlp_isChildNameExist(root_.get(), "a"), 1);
    EXPECT_EQ(xmlp_isChildNameExist(root_.get(), "b"), 0);
    EXPECT_EQ(xmlp_isChildNameExist(nullptr, "a"), 0);
    EXPECT_EQ(xmlp_isChildNameExist(root_.get(), nullptr), 0);
}

TEST_F(Nodes, TakeNamesThatAreFree) {
    XMLP_NODE *a = append("a");
    append("b");
    EXPECT_EQ(linesOf([&] {
                  EXPECT_EQ(xmlp_setNodeName(a, "a"), -1);
                  EXPECT_EQ(xmlp_setNodeName(a, "b"), -1);
                  EXPECT_EQ(xmlp_setNodeName(a, "x y"), -1);
                  EXPECT_EQ(xmlp_setNodeName(a, ""), -1);
                  EXPECT_EQ(xmlp_setNodeName(a, nullptr), -1);
                  EXPECT_EQ(xmlp_setNodeName(nullptr, "a"), -1);
              }),
              (Lines{"xmlp_setNodeName: node name existed.", "xmlp_setNodeName: node name existed.",
                     "xmlp_setNodeName: invalid name.", "xmlp_setNodeName: invalid params.",
                     "xmlp_setNodeName: invalid params.", "xmlp_setNodeName: invalid params."}));
    EXPECT_EQ(xmlp_setNodeName(a, "c"), 0);
    EXPECT_EQ(children(), "cb");
    EXPECT_EQ(xmlp_setNodeName(root_.get(), "r"), 0) << "without a parent any name is free";
    EXPECT_EQ(xmlp_setNodeName(root_.get(), "r"), 0);
}

TEST_F(Nodes, ShareTheItemNameUntilRenamed) {
    XMLP_NODE *first = append("item");
    XMLP_NODE *second = xmlp_initNode();
    EXPECT_EQ(_setType(first, 0), 0);
    EXPECT_EQ(field(first->name), g_xmlp_itemName);
    second->name = g_xmlp_itemName;
    xmlp_insNodeLast(second, root_.get());
    EXPECT_EQ(_setType(second, 0), 0);
    EXPECT_EQ(field(root_->type), static_cast<uint32_t>(XMLP_TYPE_LIST));
    EXPECT_EQ(xmlp_setNodeName(first, "other"), 0);
    EXPECT_STREQ(g_xmlp_itemName, "item");
    xmlp_delNode(first);
    xmlp_delNode(second);
    EXPECT_EQ(children(), "");
}

TEST_F(Nodes, HoldValuesOfCountedBytes) {
    XMLP_NODE *a = append("a");
    EXPECT_EQ(xmlp_setNodeValue(a, "x\0y", 3), 0);
    EXPECT_EQ(xmlp_setNodeValue(a, a->value, 2), 0) << "from its own old value";
    EXPECT_EQ(std::string(a->value, a->valueSize), std::string("x\0", 2));
    EXPECT_EQ(linesOf([&] {
                  EXPECT_EQ(xmlp_setNodeValue(nullptr, nullptr, 0), -1);
                  EXPECT_EQ(xmlp_setNodeValue(a, nullptr, 1), -1);
                  EXPECT_EQ(xmlp_setNodeValue(a, "", 0), -1);
                  EXPECT_EQ(xmlp_setNodeValue(root_.get(), "v", 1), -1);
              }),
              (Lines{"xmlp_setNodeValue: pNode is null.",
                     "xmlp_setNodeValue: value is null but valueSize > 0.",
                     "xmlp_setNodeValue: value is not null but valueSize is 0.",
                     "xmlp_setNodeValue: pNode is not leaf node."}));
    EXPECT_EQ(field(a->valueSize), 2u);
    EXPECT_EQ(field(a->type), static_cast<uint32_t>(XMLP_TYPE_NONE)) << "the type is the caller's";
    EXPECT_EQ(xmlp_setNodeValue(a, nullptr, 0), 0);
    EXPECT_EQ(field(a->value), nullptr);
}

TEST_F(Nodes, HoldAttributesInOrder) {
    XMLP_NODE *a = append("a");
    EXPECT_EQ(xmlp_addNodeAttr(a, "x", "1"), 0);
    EXPECT_EQ(xmlp_addNodeAttr(a, "y", nullptr), 0);
    EXPECT_EQ(xmlp_addNodeAttr(a, "z", "3"), 0);
    EXPECT_EQ(xmlp_setNodeAttr(a, "x", "one"), 0);
    EXPECT_EQ(treeText(a), "a:N[x=one y z=3]");
    EXPECT_EQ(xmlp_getNodeAttrCount(a), 3u);
    EXPECT_EQ(xmlp_isNodeAttr(a, "y", nullptr), 1);
    EXPECT_EQ(xmlp_isNodeAttr(a, "y", ""), 0);
    EXPECT_EQ(xmlp_isNodeAttr(a, "z", "3"), 1);
    EXPECT_EQ(xmlp_isNodeAttr(a, "z", nullptr), 0);
    EXPECT_EQ(xmlp_isNodeAttr(a, "w", nullptr), 0);
    EXPECT_EQ(xmlp_isAttrNameExist(a->attrList, "yz", 1), 1);
    EXPECT_EQ(xmlp_isAttrNameExist(a->attrList, "yz", 2), 0);
    EXPECT_EQ(xmlp_isAttrNameExist(nullptr, "y", 1), 0);

    char *value = nullptr;
    EXPECT_EQ(xmlp_getNodeAttr(a, "x", &value), 0);
    EXPECT_STREQ(value, "one");
    std::free(value);
    EXPECT_EQ(xmlp_getNodeAttr(a, "y", &value), 0);
    EXPECT_EQ(value, nullptr);

    for (const char *name : {"y", "x", "z"}) {
        EXPECT_EQ(xmlp_delNodeAttr(a, name), 0);
    }
    EXPECT_EQ(field(a->attrList), nullptr);
}

TEST_F(Nodes, RefuseBadAttributes) {
    XMLP_NODE *a = append("a");
    xmlp_addNodeAttr(a, "x", nullptr);
    xmlp_addNodeAttr(a, "y", nullptr);
    char *value = nullptr;
    EXPECT_EQ(
        linesOf([&] {
            EXPECT_EQ(xmlp_addNodeAttr(a, "", "v"), -1);
            EXPECT_EQ(xmlp_addNodeAttr(a, "b=c", "v"), -1);
            EXPECT_EQ(xmlp_addNodeAttr(a, "b", "a&b"), -1);
            EXPECT_EQ(xmlp_addNodeAttr(a, "x", "v"), -1);
            EXPECT_EQ(xmlp_addNodeAttr(a, "y", "v"), -1);
            EXPECT_EQ(xmlp_setNodeAttr(a, nullptr, "v"), -1);
            EXPECT_EQ(xmlp_setNodeAttr(a, "b c", "v"), -1);
            EXPECT_EQ(xmlp_setNodeAttr(a, "x", "\""), -1);
            EXPECT_EQ(xmlp_setNodeAttr(a, "z", "v"), -1);
            EXPECT_EQ(xmlp_delNodeAttr(a, "z"), -1);
            EXPECT_EQ(xmlp_delNodeAttr(a, nullptr), -1);
            EXPECT_EQ(xmlp_getNodeAttr(a, "z", &value), -1);
            EXPECT_EQ(xmlp_getNodeAttr(nullptr, "x", &value), -1);
            EXPECT_EQ(xmlp_isNodeAttr(nullptr, "x", nullptr), 0);
        }),
        (Lines{"xmlp_addNodeAttr: invalid params.", "xmlp_addNodeAttr: invalid attribute name b=c.",
               "xmlp_addNodeAttr: invalid attribute value.", "xmlp_addNodeAttr: attribute existed.",
               "xmlp_addNodeAttr: attribute existed.", "xmlp_setNodeAttr: invalid params.",
               "xmlp_setNodeAttr: invalid attribute name.",
               "xmlp_setNodeAttr: invalid attribute value.",
               "xmlp_setNodeAttr: attribute not exist.", "xmlp_delNodeAttr: attribute not exist.",
               "xmlp_delNodeAttr: invalid params.", "xmlp_getNodeAttr: attribute not exist.",
               "xmlp_getNodeAttr: invalid params.", "xmlp_isNodeAttr: invalid params."}));
    EXPECT_EQ(treeText(a), "a:N[x y]");
}

TEST_F(Nodes, AreDeletedAloneOrWithAllUnderThem) {
    XMLP_NODE *a = append("a");
    XMLP_NODE *b = append("b");
    XMLP_NODE *c = append("c");
    for (int depth = 0; depth < 100'000; ++depth) {
        XMLP_NODE *deeper = newNode("d");
        xmlp_insNodeLast(deeper, b);
        b = deeper;
    }
    EXPECT_EQ(linesOf([&] {
                  xmlp_delNode(root_.get());
                  xmlp_delNode(nullptr);
              }),
              (Lines{"xmlp_delNode: invalid params.", "xmlp_delNode: invalid params."}));
    xmlp_delDtree(a->next);
    EXPECT_EQ(children(), "ac");
    xmlp_delNode(c);
    xmlp_delNode(a);
    EXPECT_EQ(children(), "");
}

TEST_F(Nodes, ReportNullArguments) {
    XMLP_NODE loose = {};
    EXPECT_EQ(
        linesOf([&] {
            EXPECT_EQ(xmlp_insNodeFirst(nullptr, root_.get()), -1);
            EXPECT_EQ(xmlp_insNodeLast(root_.get(), nullptr), -1);
            EXPECT_EQ(xmlp_insNodeAfter(root_.get(), nullptr), -1);
            EXPECT_EQ(xmlp_insNodeBefore(root_.get(), &loose), -1);
            EXPECT_EQ(xmlp_addChildNode(nullptr, root_.get(), 0), -1);
            EXPECT_EQ(xmlp_getChildNode(nullptr, 0), nullptr);
            EXPECT_EQ(xmlp_getChildNodeByName(root_.get(), "a", 0), nullptr);
            EXPECT_EQ(xmlp_getChildNodeByName(root_.get(), "", 1), nullptr);
            EXPECT_EQ(xmlp_getChildNodeCount(nullptr), 0u);
            EXPECT_EQ(xmlp_getNodeAttrCount(nullptr), 0u);
        }),
        (Lines{"xmlp_insNodeFirst: invalid params.", "xmlp_insNodeLast: invalid params.",
               "xmlp_insNodeAfter: invalid params.", "xmlp_insNodeBefore: invalid params.",
               "xmlp_addChildNode: invalid params.", "xmlp_getChildNode: parent is null.",
               "xmlp_getChildNodeByName: invalid params.",
               "xmlp_getChildNodeByName: invalid params.", "xmlp_getChildNodeCount: node is null.",
               "xmlp_getNodeAttrCount: node is null."}));
}

} // namespace
