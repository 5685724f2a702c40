// What texts are accepted, what becomes of them, and what is said of those that are refused.

#include "tests/support/capture.h"
#include "tests/support/trees.h"
#include "xmlp/xmlp_internal.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

using std::string_literals::operator""s;

TEST(Dialect, AcceptsAndTypes) {
    const struct {
        std::string text;
        const char *tree;
    } cases[] = {
        {"<a/>", "/:B(a:N)"},
        {"<a></a>", "/:B(a:N)"},
        {"<a> x </a>", "/:B(a:L\" x \")"},
        {"<a>1 &lt; 2 &amp;lt;</a>", "/:B(a:L\"1 < 2 &lt;\")"},
        {"<r> <a>1</a> text <b/> </r>", "/:B(r:B(a:L\"1\" b:N))"},
        {"<r><a/>text</r>", "/:B(r:B(a:N))"},
        {"<r><a><b/></a><a/></r>", "/:B(r:B(a:B(b:N) a:N))"},
        {"<l><item>1</item><item/></l>", "/:B(l:S(item:I\"1\" item:I))"},
        {"<item>1</item>", "/:S(item:I\"1\")"},
        {"<l><Item/><items/></l>", "/:B(l:B(Item:N items:N))"},
        {"<a x=\"1\" y=\"\"/>", "/:B(a:N[x=1 y])"},
        {"<a x = \"1\"\n\ty=\"=' /\" >t</a>", "/:B(a:L[x=1 y==' /]\"t\")"},
        {"<a x=\"p/q\"></a>", "/:B(a:N[x=p/q])"},
        {"<a x=\"1\"y=\"2\"/>", "/:B(a:N[x=1 y=2])"},
        {"<a x=\"1\" ax=\"1\" xa=\"2\"/>", "/:B(a:N[x=1 ax=1 xa=2])"},
        {"<a ></a>", "/:B(a:N)"},
        {"<a / junk=/>", "/:B(a:N)"},
        {"text<a/>text", "/:B(a:N)"},
        {"\xEF\xBB\xBF <?xml ?>\n<a/>\n", "/:B(a:N)"},
        {"< />", "/:B(:N)"},
        {"<  x=\"1\"/>", "/:B(:N[x=1])"},
        {"<1'!:-.\xC3\xA4/>", "/:B(1'!:-.\xC3\xA4:N)"},
        {"<=/>", "/:B(=:N)"},
        // A lead byte takes the bytes after it with it, whatever they are.
        {"<a>\xE0<b</a>", "/:B(a:L\"\xE0<b\")"},
        {"<a>\xC1\xF5\x80</a>", "/:B(a:L\"\xC1\xF5\x80\")"},
        {"<a/>\xF4>>>", "/:B(a:N)"},
        // A start tag that never ends makes no element.
        {"<a", "/:N"},
        {"<", "/:N"},
    };
    for (const auto &test : cases) {
        std::string tree;
        EXPECT_EQ(outputOf([&] { tree = staticTreeText(test.text); }), "") << test.text;
        EXPECT_EQ(tree, test.tree) << test.text;
    }
}

TEST(Dialect, RefusesWithLinesAtEachLevel) {
    const std::string check = "_checkXml: error xml tag.";
    const std::string sub = "_subXml: error xml tag.";
    const std::string name = "_checkNameAttr: error xml tag name.";
    const std::string attribute = "_checkNameAttr: error xml attribute.";
    const std::string cut = "_checkNameAttr: error xml attributeibute.";
    const std::string notSame = "_subXml: not same tag name.";
    const std::string single = "_setType: single element is named item.";
    const std::string notItem = "_setType: tag name is not item.";
    const struct {
        std::string text;
        Lines lines;
    } cases[] = {
        {"", {"_checkXml: no xml tag found."}},
        {"text", {"_checkXml: no xml tag found."}},
        {"\xC3<a/>", {check}},
        {"<?xml", {"xmlp_parse: error in xml header."}},
        {"<?>", {"xmlp_parse: error in xml header."}},
        {"<a/><b/>", {check}},
        {"<a/>>", {check}},
        {">", {check}},
        {"/>", {check}},
        {"</a>", {check}},
        {"<a<b/>", {check}},
        {"<!-- c --><a/>", {sub, check}},
        {"<a>", {sub, check}},
        {"<a><b></a>", {notSame, sub, check}},
        {"<a></b>", {notSame, check}},
        {"<ab></a>", {notSame, check}},
        {"<a></ab>", {notSame, check}},
        {"<a></a >", {notSame, check}},
        {"<a x></a x>", {"_subXml: valid tag name.", check}},
        {"<a/b></a>", {notSame, check}},
        {"<a></a/>", {sub, check}},
        {"<a></>", {sub, check}},
        {"<a>b></a>", {sub, check}},
        {"<a>/></a>", {sub, check}},
        {"<a><b<c/></a>", {sub, check}},
        {"<a></", {check}},
        {"<a><b></", {sub, check}},
        {"<//>", {check}},
        {"< b/>", {name, check}},
        {"<a&/>", {name, check}},
        {"<\"a\"/>", {name, check}},
        {"<a =\"1\"/>", {attribute, check}},
        {"<a x/>", {cut, check}},
        {"<a x />", {attribute, check}},
        {"<a x=/>", {attribute, check}},
        {"<a x='1'/>", {attribute, check}},
        {"<a x=\"a&lt;\"/>", {attribute, check}},
        {"<a x=\"p/q\"/>", {cut, check}},
        {"<a x=\"1></a>", {cut, check}},
        {"<a><b><c x='1'/></b></a>", {attribute, sub, sub, check}},
        {"<a><b x='1'></b></a>", {attribute, sub, check}},
        {"<a x='1'><b></c></a>", {notSame, sub, check}},
        {"<a\0/>"s, {name, check}},
        {"<\0/>"s, {name, check}},
        // The structure is sound, and the fault is found when nodes are made.
        {"<a>x&y</a>", {"_makeStree: invalid value."}},
        {"<a x=\"1\" x=\"2\"/>", {"_getNameAttr: attr name existed."}},
        {"<r><a x=\"\" y=\"\" x=\"\">&</a></r>", {"_getNameAttr: attr name existed."}},
        {"<l><item/><x/></l>", {notItem}},
        {"<r><x/><item/></r>", {single}},
        {"<l><item><x/></item></l>", {notItem}},
        {"<l><item><item/></item></l>", {single}},
    };
    for (const auto &test : cases) {
        std::string tree;
        EXPECT_EQ(linesOf([&] { tree = staticTreeText(test.text); }), test.lines) << test.text;
        EXPECT_EQ(tree, "refused") << test.text;
    }
}

TEST(Dialect, KeepsTheDeclaration) {
    const std::string header = "\xEF\xBB\xBF \n<?xml version=\"1.0\"?>";
    const Doc doc = parseStatic(header + "\n<a/>");
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(std::string(doc->tree->header, doc->tree->headerLen), header);
    EXPECT_EQ(doc->tree->isStatic, 1u);
    EXPECT_EQ(doc->tree->lock, 0u);

    const Doc plain = parseStatic("<a/>");
    EXPECT_EQ(plain->tree->header, nullptr);
    EXPECT_EQ(plain->tree->headerLen, 0u);
}

TEST(Dialect, ChecksMillionsOfLevels) {
    constexpr size_t depth = 1'000'000;
    std::string text;
    for (size_t i = 0; i < depth; ++i) {
        text += "<a>";
    }
    std::string closed = text + "x";
    for (size_t i = 0; i < depth; ++i) {
        closed += "</a>";
    }
    const Doc doc = parseStatic(closed);
    ASSERT_NE(doc, nullptr);
    size_t levels = 0;
    const XMLP_NODE *node = doc->tree->rootNode->firstChild;
    for (; node->firstChild != nullptr; node = node->firstChild) {
        ++levels;
    }
    EXPECT_EQ(levels, depth - 1);
    EXPECT_EQ(std::string(node->value, node->valueSize), "x");

    const std::string output = outputOf([&] { EXPECT_EQ(parseStatic(text), nullptr); });
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), static_cast<long>(depth) + 1)
        << "one line for each element left open, and the check's own";
}

TEST(Check, TakesStartTagAndContentFromAnywhere) {
    const std::string startTag = "a>";
    const auto content = std::make_unique<std::string>("<b><c></c></b></a>rest");
    const char *end = content->data() + content->size();
    EXPECT_EQ(_subXml(startTag.data(), content->data(), end), end - 4);
    const std::vector<char> bracket = {'>'}; // nothing stands before it
    EXPECT_EQ(
        linesOf([&] { EXPECT_EQ(_subXml("a>", bracket.data(), bracket.data() + 1), nullptr); }),
        Lines{"_subXml: error xml tag."});
}

TEST(Paths, NameElements) {
    const Doc doc = parseStatic("<a><b>1</b><b><c/></b><bc>2</bc></a>");
    ASSERT_NE(doc, nullptr);
    XMLP_NODE *root = doc->tree->rootNode;
    EXPECT_EQ(xmlp_seekXml(doc.get(), "/"), root);
    EXPECT_EQ(xmlp_seekXml(doc.get(), "/a"), field(root->firstChild));
    EXPECT_EQ(xmlp_seekXml(doc.get(), "/a/b"), field(root->firstChild->firstChild));
    EXPECT_EQ(xmlp_seekXml(doc.get(), "/a/bc"), field(root->firstChild->lastChild));
    EXPECT_EQ(linesOf([&] {
                  for (const char *path : {"", "a", "/b", "/a/b/c", "/A", "/a/b/"}) {
                      EXPECT_EQ(xmlp_seekXml(doc.get(), path), nullptr) << path;
                  }
                  EXPECT_EQ(xmlp_seekXml(doc.get(), "//a"), nullptr);
                  EXPECT_EQ(xmlp_seekXml(doc.get(), nullptr), nullptr);
                  EXPECT_EQ(xmlp_seekXml(nullptr, "/"), nullptr);
              }),
              (Lines{"xmlp_getChildNodeByName: invalid params.",
                     "xmlp_getChildNodeByName: invalid params.", "xmlp_seekXml: invalid params.",
                     "xmlp_seekXml: invalid params."}));
}

TEST(Check, ReportsNullArguments) {
    char table[4] = {};
    char *name = nullptr;
    XMLP_ATTR *attrs = nullptr;
    XMLP_NODE node = {};
    EXPECT_EQ(linesOf([&] {
                  EXPECT_EQ(xmlp_parse(nullptr, 0, 1), nullptr);
                  EXPECT_EQ(xmlp_xml2Tree(nullptr, 0, 1), nullptr);
                  EXPECT_EQ(_checkXml(nullptr, table), -1);
                  EXPECT_EQ(_subXml(table, nullptr, table), nullptr);
                  EXPECT_EQ(_checkNameAttr(nullptr, '>'), -1);
                  EXPECT_EQ(_getNameAttr("a>", '>', &name, nullptr, 0, nullptr), -1);
                  EXPECT_EQ(_getNameAttr("a>", '>', &name, &attrs, 1, nullptr), -1);
                  EXPECT_EQ(_setType(&node, 1), -1);
                  EXPECT_EQ(_findName(nullptr, "a", 1), nullptr);
                  EXPECT_EQ(_saveNameAttr("a>", '>', nullptr), 0u);
                  EXPECT_EQ(_makeStree("<a/>", 4, nullptr, table, nullptr, &node), nullptr);
              }),
              (Lines{"xmlp_parse: xmlBuf is null.", "xmlp_xml2Tree: xmlBuf is null.",
                     "_checkXml: invalid params.", "_subXml: invalid params.",
                     "_checkNameAttr: buf is null.", "_getNameAttr: invalid params.",
                     "_getNameAttr: invalid params.", "_setType: invalid params.",
                     "_findName: invalid params.", "_saveNameAttr: invalid params.",
                     "_makeStree: invalid params."}));
}

} // namespace
