// The editing primitives, on trees made by hand.

#include "tests/support/capture.h"
#include "tests/support/cases.h"
#include "tests/support/trees.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>
#include <functional>
#include <sstream>

namespace {

struct FreeTree {
    void operator()(XMLP_NODE *node) const { xmlp_delDtree(node); }
};

using Tree = std::unique_ptr<XMLP_NODE, FreeTree>;

XMLP_NODE *append(const char *name, XMLP_NODE *parent) {
    XMLP_NODE *node = xmlp_initNode();
    EXPECT_EQ(xmlp_setNodeName(node, name), 0);
    EXPECT_EQ(xmlp_insNodeLast(node, parent), 0);
    return node;
}

const char *textOf(const std::string &word) {
    return word.empty() ? nullptr : word == "\"\"" ? "" : word.c_str();
}

// Runs a line of edits.cases.
int edit(XMLP_NODE *root, const std::string &line) {
    std::string operation, name, first, second;
    std::istringstream(line) >> operation >> name >> first >> second;
    const auto find = [root](const std::string &wanted) {
        const auto length = static_cast<uint32_t>(wanted.size());
        return wanted == "/" ? root : xmlp_getChildNodeByName(root, wanted.c_str(), length);
    };
    const char *text = textOf(first);
    const auto size = static_cast<uint32_t>(text == nullptr ? 0 : std::strlen(text));
    const auto position = static_cast<uint32_t>(std::strtoul(first.c_str(), nullptr, 10));
    Tree made; // freed again when it could not be put anywhere
    const auto make = [&] {
        made.reset(xmlp_initNode());
        EXPECT_EQ(xmlp_setNodeName(made.get(), name.c_str()), 0);
        return made.get();
    };
    const std::map<std::string, std::function<int()>> operations = {
        {"first", [&] { return xmlp_insNodeFirst(make(), root); }},
        {"last", [&] { return xmlp_insNodeLast(make(), root); }},
        {"before", [&] { return xmlp_insNodeBefore(make(), find(first)); }},
        {"after", [&] { return xmlp_insNodeAfter(make(), find(first)); }},
        {"add", [&] { return xmlp_addChildNode(make(), root, position); }},
        {"name", [&] { return xmlp_setNodeName(find(name), text); }},
        {"value", [&] { return xmlp_setNodeValue(find(name), text, size); }},
        {"put", [&] { return xmlp_addNodeAttr(find(name), text, textOf(second)); }},
        {"set", [&] { return xmlp_setNodeAttr(find(name), text, textOf(second)); }},
        {"drop", [&] { return xmlp_delNodeAttr(find(name), text); }},
        {"delete", [&] { return xmlp_delNode(find(name)), 0; }},
        {"is", [&] { return xmlp_isNodeAttr(find(name), text, textOf(second)); }},
        {"has", [&] { return xmlp_isChildNameExist(find(name), text); }},
        {"children", [&] { return static_cast<int>(xmlp_getChildNodeCount(find(name))); }},
        {"attributes", [&] { return static_cast<int>(xmlp_getNodeAttrCount(find(name))); }}};
    const int result = operations.at(operation)();
    if (result == 0) {
        static_cast<void>(made.release());
    }
    return result;
}

TEST(Nodes, AreEdited) {
    forEachCase("edits.cases", [](const Case &test) {
        const Tree root(xmlp_initNode());
        std::string lines;
        std::istringstream edits(test.lines("edit"));
        for (std::string line; std::getline(edits, line);) {
            const size_t before = lines.size();
            int result = 0;
            lines += linesOf([&] { result = edit(root.get(), line); });
            lines += result > 0 ? std::to_string(result) + "\n" : "";
            EXPECT_TRUE(result == 0 || lines.size() > before) << line;
        }
        EXPECT_EQ(lines, test.lines("line"));
        EXPECT_EQ(treeText(root.get()), test.text("tree"));
    });
}

TEST(Nodes, AreFound) {
    const Tree root(xmlp_initNode());
    XMLP_NODE *ab = append("ab", root.get());
    XMLP_NODE *a = append("a", root.get());
    xmlp_insNodeFirst(xmlp_initNode(), root.get()); // without a name
    EXPECT_EQ(xmlp_getChildNode(root.get(), 1), ab);
    EXPECT_EQ(xmlp_getChildNode(root.get(), XMLP_POS_LAST), a);
    EXPECT_EQ(xmlp_getChildNode(root.get(), 3), nullptr);
    EXPECT_EQ(xmlp_getChildNodeByName(root.get(), "ab", 1), a);
    EXPECT_EQ(xmlp_getChildNodeByName(root.get(), "abc", 2), ab);
    EXPECT_EQ(xmlp_getChildNodeByName(root.get(), "abc", 3), nullptr);
}

TEST(Nodes, ShareTheItemNameUntilRenamed) {
    const Tree root(xmlp_initNode());
    XMLP_NODE *first = append("item", root.get());
    EXPECT_EQ(_setType(first, 0), 0);
    EXPECT_EQ(field(first->name), g_xmlp_itemName);
    XMLP_NODE *second = xmlp_initNode();
    second->name = g_xmlp_itemName;
    xmlp_insNodeLast(second, root.get());
    EXPECT_EQ(_setType(second, 0), 0);
    EXPECT_EQ(xmlp_setNodeName(first, "other"), 0);
    EXPECT_EQ(treeText(root.get()), "/:S(other:I item:I)");
}

TEST(Nodes, HoldValuesOfCountedBytes) {
    const Tree node(xmlp_initNode());
    EXPECT_EQ(xmlp_setNodeValue(node.get(), "x\0y", 3), 0);
    EXPECT_EQ(xmlp_setNodeValue(node.get(), node->value, 2), 0) << "from its own old value";
    EXPECT_EQ(treeText(node.get()), std::string("/:N\"x\0\"", 7));
}

TEST(Nodes, GiveCopiesOfAttributes) {
    const Tree node(xmlp_initNode());
    xmlp_addNodeAttr(node.get(), "x", "1");
    xmlp_addNodeAttr(node.get(), "y", nullptr);
    EXPECT_EQ(xmlp_isAttrNameExist(node->attrList, "yz", 1), 1);
    EXPECT_EQ(xmlp_isAttrNameExist(node->attrList, "yz", 2), 0);
    char *value = nullptr;
    EXPECT_EQ(xmlp_getNodeAttr(node.get(), "x", &value), 0);
    EXPECT_STREQ(value, "1");
    std::free(value);
    EXPECT_EQ(xmlp_getNodeAttr(node.get(), "y", &value), 0);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(linesOf([&] { EXPECT_EQ(xmlp_getNodeAttr(node.get(), "z", &value), -1); }),
              "xmlp_getNodeAttr: attribute not exist.\n");
}

} // namespace
