// Writing documents, and dynamic trees against static ones.

#include "tests/support/cases.h"
#include "tests/support/documents.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>

namespace {

std::string written(const XMLP_DOC *doc, bool isCompact) {
    uint32_t length = 0;
    char *text = xmlp_tree2Xml(doc, isCompact ? 1 : 0, &length);
    EXPECT_EQ(std::strlen(text), length);
    const std::string copy = text;
    std::free(text);
    return copy;
}

TEST(Serialize, WritesBothLayouts) {
    const std::string header = "\xEF\xBB\xBF <?xml version=\"1.0\"?>";
    const std::string text = header + " <r >\n<a id = \"x\" e=\"\">1&amp;2</a> text <b></b>\n"
                                      "<l><item>&lt;\"'&gt;</item><item/></l></r> tail";
    const std::string compact = header + "<r><a id=\"x\" e=\"\">1&amp;2</a><b/><l><item>"
                                         "&lt;\"'&gt;</item><item/></l></r>";
    const std::string indented = header + "\n<r>\n  <a id=\"x\" e=\"\">1&amp;2</a>\n  <b/>\n  <l>\n"
                                          "    <item>&lt;\"'&gt;</item>\n    <item/>\n  </l>\n"
                                          "</r>\n";
    for (const auto parse : {parseStatic, parseDynamic}) {
        const Doc doc = parse(text);
        EXPECT_EQ(written(doc.get(), true), compact);
        EXPECT_EQ(written(doc.get(), false), indented);
        EXPECT_EQ(documentText(parseDynamic(written(doc.get(), false)).get()), compact);
    }
    EXPECT_EQ(written(parseStatic("<a/>").get(), false), "<a/>\n");
    EXPECT_EQ(written(parseStatic("<a").get(), false), "");
}

TEST(Serialize, WritesTextsOfEveryLength) {
    // Each element one byte longer in name, attribute and value, and one level deeper than the last.
    const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::string text;
    std::string closing;
    for (size_t i = 0; i < 40; ++i) {
        const std::string indent(2 * i, ' ');
        const std::string part = letters.substr(0, i + 1);
        text += indent + "<" + part + " " + part + "=\"" + letters.substr(0, i) + "\">\n";
        text += indent + "  <v>" + part + "</v>\n";
        closing.insert(0, indent + "</" + part + ">\n");
    }
    for (const auto parse : {parseStatic, parseDynamic}) {
        EXPECT_EQ(written(parse(text + closing).get(), false), text + closing);
    }
}

TEST(Serialize, WritesSingleElements) {
    const Doc doc = parseDynamic("<r><a>1</a></r>");
    char buffer[64];
    const XMLP_NODE *r = doc->tree->rootNode->firstChild;
    EXPECT_EQ(std::string(buffer, _tree2Xml(r, buffer)), "<r><a>1</a></r>");
    EXPECT_EQ(std::string(buffer, _tree2FormatXml(r, buffer, 1)), "  <r>\n    <a>1</a>\n  </r>\n");
}

TEST(Serialize, RefusesToWriteWithoutALength) {
    const Doc doc = parseDynamic("<a/>");
    for (const uint32_t isCompact : {0u, 1u}) {
        EXPECT_EQ(
            lineListOf([&] { EXPECT_EQ(xmlp_tree2Xml(doc.get(), isCompact, nullptr), nullptr); }),
            Lines{"xmlp_tree2Xml: invalid params."});
    }
}

TEST(Serialize, RefusesTextsBeyond4GiB) {
    std::string text;
    std::string closing;
    for (int i = 0; i < 100'000; ++i) {
        text += "<a>";
        closing += "</a>";
    }
    const Doc doc = parseDynamic(text + "x" + closing);
    ASSERT_NE(doc, nullptr);
    uint32_t length = 0;
    EXPECT_EQ(lineListOf([&] { EXPECT_EQ(xmlp_dumpDoc(doc.get(), 0, &length), nullptr); }),
              Lines{"xmlp_tree2Xml: malloc failed."}); // two spaces a level make 20 GB
}

TEST(DynamicTree, EqualsTheStaticOne) {
    forEachCase("dialect.cases", [](const Case &test) {
        if (test.has("tree")) {
            const Doc dynamic = parseDynamic(test.text("text"));
            ASSERT_NE(dynamic, nullptr);
            EXPECT_EQ(treeText(dynamic->tree->rootNode), test.text("tree"));
            EXPECT_EQ(dynamic->tree->isStatic, 0u);
        }
    });
    const Doc list = parseDynamic("<l><item>1</item><item/></l>");
    const XMLP_NODE *first = list->tree->rootNode->firstChild->firstChild;
    EXPECT_EQ(field(first->name), g_xmlp_itemName);
    EXPECT_EQ(field(first->next->name), g_xmlp_itemName);
}

TEST(DynamicTree, ReadsATagWhenItsNodeIsMade) {
    // So a text is refused before its element's tag is.
    const struct {
        const char *text;
        const char *line;
    } cases[] = {
        {"<r><a x=\"\" x=\"\">&</a></r>", "_makeDtree: invalid value."},
        {"<l><item/><a x=\"\" x=\"\"><b/></a></l>", "_getNameAttr: attr name existed."},
        {"<r><a/><b>1</b><item><c/></item></r>", "_setType: single element is named item."},
    };
    for (const auto &test : cases) {
        EXPECT_EQ(lineListOf([&] { EXPECT_EQ(parseDynamic(test.text), nullptr); }),
                  Lines{test.line});
    }
}

TEST(DynamicTree, FindsRepeatedAttributesAmongMany) {
    // Names that are the tails of others, so that being known is not being repeated.
    std::string tag = "<a";
    for (int i = 0; i < 100; ++i) {
        const std::string number = std::to_string(1000 + i);
        tag += " abcd" + number + "=\"\" " + number + "=\"\"";
    }
    const Doc doc = parseDynamic(tag + "></a>");
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(xmlp_getNodeAttrCount(doc->tree->rootNode->firstChild), 200u);
    for (const char *repeated : {" abcd1000=\"\"", " 1099=\"\""}) {
        EXPECT_EQ(lineListOf([&] { EXPECT_EQ(parseDynamic(tag + repeated + "></a>"), nullptr); }),
                  Lines{"_getNameAttr: attr name existed."});
    }
}

} // namespace
