// How a static tree lies in its block, and the builder's steps called one by one.

#include "tests/support/capture.h"
#include "tests/support/cases.h"
#include "tests/support/trees.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>

namespace {

using std::string_literals::operator""s;

const char *asBytes(const void *record) {
    return static_cast<const char *>(record);
}

TEST(StaticTree, LiesInOneBlockInOrder) {
    const Doc doc = parseStatic("<r><a x=\"v\" y=\"v\">t&amp;</a><a/> tail</r>");
    ASSERT_NE(doc, nullptr);
    const XMLP_NODE *root = doc->tree->rootNode;
    const XMLP_NODE *r = root->firstChild;
    const XMLP_NODE *a = r->firstChild;
    const char *block = r->name;
    EXPECT_EQ(std::string(block, 20), "r\0\0\0a\0\0\0x\0\0\0v\0\0\0y\0\0\0"s);
    EXPECT_EQ(field(a->name), block + 4);
    EXPECT_EQ(field(a->next->name), field(a->name)) << "equal names are one";
    EXPECT_EQ(field(a->attrList->value), field(a->attrList->next->value)) << "so are equal values";
    EXPECT_EQ(field(a->value), block + 20);
    // The text behind an empty element is counted and not stored.
    const char *attrs = a->value + 2 + std::strlen(" tail");
    EXPECT_EQ(asBytes(a->attrList), attrs);
    EXPECT_EQ(asBytes(a->attrList->next), attrs + sizeof(XMLP_ATTR));
    const char *node = attrs + 2 * sizeof(XMLP_ATTR);
    for (const XMLP_NODE *expected : {root, r, a, field<const XMLP_NODE *>(a->next)}) {
        EXPECT_EQ(asBytes(expected), node);
        node += sizeof(XMLP_NODE);
    }
    EXPECT_EQ(treeText(root), "/:B(r:B(a:L[x=v y=v]\"t&\" a:N))");
}

TEST(StaticTree, StoresNamesInTableForm) {
    forEachCase("tags.cases", [](const Case &test) {
        const std::string expected = test.text("table");
        std::vector<char> table(64);
        EXPECT_EQ(_saveNameAttr(test.text("tag").c_str(), test.text("end")[0], table.data()),
                  test.number("attributes"));
        EXPECT_EQ(std::string(table.data(), expected.size() + 4), expected + "\0\0\0\0"s);
    });
}

TEST(StaticTree, IsBuiltInAreasOfExactSizes) {
    std::vector<char> names(64);
    _saveNameAttr("a x=\"1\">", '>', names.data());
    _saveNameAttr("b>", '>', names.data());
    forEachCase("areas.cases", [&](const Case &test) {
        const std::string body = test.text("body");
        const auto length = static_cast<uint32_t>(body.size());
        std::vector<char> values(test.size("values"));
        std::vector<XMLP_ATTR> attrs(test.size("attributes"));
        std::vector<XMLP_NODE> nodes(test.size("nodes"));
        std::memset(nodes.data(), 0xAA, nodes.size() * sizeof(XMLP_NODE));
        const XMLP_NODE *root = nullptr;
        EXPECT_EQ(linesOf([&] {
                      root = _makeStree(body.data(), length, names.data(), values.data(),
                                        attrs.data(), nodes.data());
                  }),
                  test.lines("line"));
        EXPECT_EQ(root == nullptr ? "refused" : treeText(root), test.text("tree", "refused"));
    });
}

TEST(Tags, AreReadIntoRecordsOfEitherKind) {
    char table[32] = {};
    _saveNameAttr("abc x=\"1\">", '>', table);
    XMLP_ATTR record = {};
    char *name = nullptr;
    XMLP_ATTR *attrs = &record;
    EXPECT_EQ(_getNameAttr("abc x=\"1\">", '>', &name, &attrs, 1, table), 0);
    EXPECT_EQ(name, table);
    EXPECT_EQ(attrs, &record) << "the builder's cursor stays";
    EXPECT_EQ(field(record.value), table + 8);

    EXPECT_EQ(_getNameAttr("abc x=\"1\" y=\"\">", '>', &name, &attrs, 0, nullptr), 0);
    XMLP_NODE node = {};
    node.name = name;
    node.attrList = attrs;
    EXPECT_EQ(treeText(&node), "abc:N[x=1 y]");
    std::free(name);
    xmlp_freeAttrList(attrs);
    for (const char *bad : {">", "a x>"}) {
        EXPECT_EQ(_getNameAttr(bad, '>', &name, &attrs, 0, nullptr), -1);
        EXPECT_EQ(_getNameAttr(bad, '>', &name, &attrs, 1, table), -1);
    }
}

} // namespace
