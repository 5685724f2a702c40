// How a static tree lies in its block, and the builder's steps called one by one.

#include "tests/support/capture.h"
#include "tests/support/trees.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>
#include <gtest/gtest.h>
#include <vector>

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

    const char *values = block + 20;
    EXPECT_EQ(field(a->value), values);
    EXPECT_EQ(field(a->valueSize), 2u);
    // The text behind an empty element is counted and not stored.
    const char *attrs = values + 2 + std::strlen(" tail");
    EXPECT_EQ(asBytes(a->attrList), attrs);
    EXPECT_EQ(asBytes(a->attrList->next), attrs + sizeof(XMLP_ATTR));
    const char *nodes = attrs + 2 * sizeof(XMLP_ATTR);
    EXPECT_EQ(asBytes(root), nodes);
    EXPECT_EQ(asBytes(r), nodes + sizeof(XMLP_NODE));
    EXPECT_EQ(asBytes(a), nodes + 2 * sizeof(XMLP_NODE));
    EXPECT_EQ(asBytes(a->next), nodes + 3 * sizeof(XMLP_NODE));
    EXPECT_EQ(field(a->next->attrList), nullptr);
    EXPECT_EQ(field(root->name), nullptr);
}

TEST(StaticTree, StoresNamesInTableForm) {
    const struct {
        const char *tag;
        char end;
        uint32_t attributes;
        std::string table;
    } cases[] = {
        {"a>", '>', 0, "a\0\0\0"s},
        {"abc>", '>', 0, "abc\0"s},
        {"abcd>", '>', 0, "abcd\0\xFF\xFF\0"s},
        {"abcd cd=\"abcd\" d=\"\">", '>', 2, "abcd\0\xFF\xFF\0cd\0\0d\0\0\0"s},
        {"wxyzabc abc=\"abc\"/>", '/', 1, "wxyzabc\0"s},
        {" />", '/', 0, "\0\xFF\xFF\0"s},
        {"a ></a>", '>', 0, "a\0\0\0"s},
    };
    for (const auto &test : cases) {
        std::vector<char> table(64);
        EXPECT_EQ(_saveNameAttr(test.tag, test.end, table.data()), test.attributes) << test.tag;
        EXPECT_EQ(std::string(table.data(), test.table.size() + 4), test.table + "\0\0\0\0"s)
            << test.tag;
    }
}

TEST(StaticTree, BuildsInGivenAreas) {
    const std::string body = "<r><a x=\"1\">t</a></r>";
    std::vector<char> names(64);
    _saveNameAttr("r>", '>', names.data());
    _saveNameAttr("a x=\"1\">", '>', names.data());
    std::vector<char> values(1);
    std::vector<XMLP_ATTR> attrs(1);
    std::vector<XMLP_NODE> nodes(3);
    std::memset(nodes.data(), 0xAA, nodes.size() * sizeof(XMLP_NODE));
    const auto length = static_cast<uint32_t>(body.size());
    XMLP_NODE *root =
        _makeStree(body.data(), length, names.data(), values.data(), attrs.data(), nodes.data());
    ASSERT_EQ(root, nodes.data());
    EXPECT_EQ(treeText(root), "/:B(r:B(a:L[x=1]\"t\"))");
}

TEST(StaticTree, WritesNoFurtherThanItsAreas) {
    const std::string body = "<a x=\"1\"/>";
    char names[64] = {};
    _saveNameAttr("a x=\"1\"/>", '/', names);
    char values[1];
    XMLP_NODE nodes[2];
    const auto length = static_cast<uint32_t>(body.size());
    EXPECT_EQ(_makeStree(body.data(), length, names, values, nullptr, nodes), nullptr);
}

TEST(StaticTree, RefusesBodiesThatNeverPassedTheCheck) {
    for (const std::string body : {"</a>", "<a/></a>", "<a></a></a>", "<a><b<c>"}) {
        std::vector<char> names(64);
        _saveNameAttr("a>", '>', names.data());
        _saveNameAttr("b>", '>', names.data());
        std::vector<char> values(16);
        std::vector<XMLP_NODE> nodes(8);
        const auto length = static_cast<uint32_t>(body.size());
        EXPECT_EQ(linesOf([&] {
                      EXPECT_EQ(_makeStree(body.data(), length, names.data(), values.data(),
                                           nullptr, nodes.data()),
                                nullptr);
                  }),
                  Lines{"_makeStree: error xml tag."})
            << body;
    }
}

TEST(Tags, AreReadIntoRecordsOfEitherKind) {
    const char *tag = "abc x=\"1\" y=\"\">";
    char table[32] = {};
    _saveNameAttr(tag, '>', table);
    XMLP_ATTR records[2] = {};
    char *name = nullptr;
    XMLP_ATTR *attrs = records;
    EXPECT_EQ(_getNameAttr(tag, '>', &name, &attrs, 1, table), 0);
    EXPECT_EQ(name, table);
    EXPECT_EQ(attrs, records) << "the builder's cursor stays";
    EXPECT_EQ(field(records[0].next), &records[1]);
    EXPECT_EQ(field(records[1].value), nullptr);

    EXPECT_EQ(_getNameAttr(tag, '>', &name, &attrs, 0, nullptr), 0);
    EXPECT_STREQ(name, "abc");
    EXPECT_STREQ(field(attrs->value), "1");
    EXPECT_STREQ(field(attrs->next->name), "y");
    std::free(name);
    xmlp_freeAttrList(attrs);

    EXPECT_EQ(_getNameAttr("a  >", '>', &name, &attrs, 0, nullptr), 0);
    EXPECT_EQ(attrs, nullptr);
    std::free(name);
    EXPECT_EQ(linesOf([&] {
                  EXPECT_EQ(_getNameAttr("a x=\"\" x=\"\">", '>', &name, &attrs, 0, nullptr), -1);
              }),
              Lines{"_getNameAttr: attr name existed."});
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(attrs, nullptr);
}

} // namespace
