// What texts are accepted, what becomes of them, and what is said of those that are refused.

#include "tests/support/bounds.h"
#include "tests/support/cases.h"
#include "tests/support/documents.h"
#include "xmlp/xmlp_internal.h"

namespace {

TEST(Dialect, AcceptsOrRefusesWithLines) {
    forEachCase("dialect.cases", [](const Case &test) {
        Doc doc;
        EXPECT_EQ(linesOf([&] { doc = parseStatic(test.text("text")); }), test.lines("line"));
        EXPECT_EQ(doc == nullptr ? "refused" : treeText(doc->tree->rootNode),
                  test.text("tree", "refused"));
        if (doc != nullptr) {
            EXPECT_EQ(std::string(doc->tree->header, doc->tree->headerLen), test.text("header"));
            EXPECT_EQ(doc->tree->header == nullptr, doc->tree->headerLen == 0);
            EXPECT_EQ(doc->tree->isStatic, 1u);
        }
    });
}

TEST(Dialect, TakesMillionsOfElementsOnASmallStack) {
    forEachCase("deep.cases", [](const Case &test) {
        const std::string text = test.text("text");
        for (const auto parse : {parseStatic, parseDynamic}) {
            Doc doc;
            const std::string output = outputOf([&] { onSmallStack([&] { doc = parse(text); }); });
            EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), test.number("lines"));
            long levels = doc == nullptr ? 0 : 1;
            std::string path;
            const XMLP_NODE *node = doc == nullptr ? nullptr : doc->tree->rootNode;
            for (; levels > 0 && node->firstChild != nullptr; ++levels) {
                node = node->firstChild;
                path.append("/").append(node->name);
            }
            EXPECT_EQ(levels, test.number("levels"));
            onSmallStack([&] {
                if (doc != nullptr) {
                    EXPECT_EQ(xmlp_seekXml(doc.get(), path.c_str()), node);
                    EXPECT_EQ(xmlp_getChildNodeCount(node->parent), test.number("children"));
                    EXPECT_EQ(documentText(doc.get()), text);
                }
                doc.reset();
            });
        }
    });
}

TEST(Check, TakesStartTagAndContentFromAnywhere) {
    const std::string startTag = "a>";
    const std::vector<char> content = {'<', 'b', '/', '>', '<', '/', 'a', '>', '>'};
    const char *end = content.data() + content.size();
    EXPECT_EQ(_subXml(startTag.data(), content.data(), end), end - 1);
    const std::vector<char> bracket = {'>'}; // nothing stands before it
    EXPECT_EQ(
        linesOf([&] { EXPECT_EQ(_subXml("a>", bracket.data(), bracket.data() + 1), nullptr); }),
        "_subXml: error xml tag.\n");
}

TEST(Paths, NameElements) {
    const Doc doc = parseStatic("<a><b>1</b><b><c/></b><bc>2</bc></a>");
    ASSERT_NE(doc, nullptr);
    forEachCase("paths.cases", [&](const Case &test) {
        const XMLP_NODE *node = nullptr;
        EXPECT_EQ(linesOf([&] { node = xmlp_seekXml(doc.get(), test.text("path").c_str()); }),
                  test.lines("line"));
        EXPECT_EQ(node == nullptr ? "" : treeText(node), test.text("tree"));
    });
}

// A leak checker sees whether everything went.

TEST(Document, LivesUntilItsLastHolderLeaves) {
    for (const auto make : {xmlp_loadDoc, xmlp_xml2Tree}) {
        XMLP_DOC *doc = make("<a>1</a>", 8, 1);
        ASSERT_NE(doc, nullptr);
        EXPECT_EQ(xmlp_copyDoc(doc), doc);
        EXPECT_EQ(doc->tree->refCount, 2u);
        xmlp_releaseDoc(doc);
        EXPECT_EQ(doc->tree->refCount, 1u);
        EXPECT_EQ(treeText(doc->tree->rootNode), "/:B(a:L\"1\")");
        xmlp_releaseDoc(doc);
    }
}

TEST(Document, IsFreedThoughItHasNoHolder) {
    XMLP_DOC doc = {xmlp_parse("<?x?><a/>", 9, 1)};
    xmlp_destroyXmlTree(&doc);
    std::free(doc.tree);
    doc.tree = nullptr;
    xmlp_destroyXmlTree(&doc);
}

} // namespace
