// Handles, holders and lock hooks.

#include "tests/support/capture.h"
#include "tests/support/trees.h"
#include "xmlp/xmlp_internal.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

TEST(Document, LivesUntilItsLastHolderLeaves) {
    XMLP_DOC *doc = xmlp_loadDoc("<a>1</a>", 8, 1);
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(doc->tree->refCount, 1u);
    EXPECT_EQ(xmlp_copyDoc(doc), doc);
    EXPECT_EQ(doc->tree->refCount, 2u);
    xmlp_releaseDoc(doc);
    EXPECT_EQ(doc->tree->refCount, 1u);
    EXPECT_EQ(treeText(doc->tree->rootNode), "/:B(a:L\"1\")");
    xmlp_releaseDoc(doc); // a leak checker sees whether everything went
}

TEST(Document, IsReleasedThoughNeverLoaded) {
    xmlp_releaseDoc(xmlp_xml2Tree("<?x?><a/>", 9, 1));
}

TEST(Document, CanBeTakenApart) {
    XMLP_TREE *tree = xmlp_parse("<?x?><a/>", 9, 1);
    XMLP_DOC doc = {tree};
    xmlp_destroyXmlTree(&doc);
    std::free(tree);

    XMLP_DOC empty = {nullptr};
    xmlp_destroyXmlTree(&empty);
}

TEST(Document, ReportsNullHandles) {
    EXPECT_EQ(linesOf([] {
                  EXPECT_EQ(xmlp_copyDoc(nullptr), nullptr);
                  xmlp_releaseDoc(nullptr);
                  xmlp_destroyXmlTree(nullptr);
                  EXPECT_EQ(_initLock(nullptr), -1);
                  _lock(nullptr);
                  _unLock(nullptr);
                  _destroyLock(nullptr);
                  xmlp_delDtree(nullptr);
                  xmlp_delStree(nullptr);
              }),
              (Lines{"xmlp_copyDoc: doc is null.", "xmlp_releaseDoc: doc is null.",
                     "xmlp_destroyXmlTree: doc is null.", "_initLock: doc is null.",
                     "_lock: doc is null.", "_unLock: doc is null.", "_destroyLock: doc is null.",
                     "xmlp_delDtree: node is null.", "xmlp_delStree: rootNode is null."}));
}

} // namespace
