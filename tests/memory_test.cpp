// Every allocation fails once: the failure is told, nothing is left behind, nothing is half done.

#include "appmngr/appmngr_internal.h"
#include "tests/support/capture.h"
#include "tests/support/failing_memory.h"
#include "tests/support/files.h"
#include "tests/support/images.h"
#include "tests/support/trees.h"
#include "xmlp/xmlp_internal.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

// Blocks that an action leaves, counted around it; the action frees what it is given.
template <class Action>
size_t failuresOf(Action action, const char *line) {
    const long before = liveBlocks();
    std::string output;
    return failEachAllocation([&] { output = outputOf(action); },
                              [&] {
                                  EXPECT_EQ(liveBlocks(), before);
                                  EXPECT_NE(output.find(line), std::string::npos) << output;
                              });
}

std::string deepDocument(int depth) {
    std::string text = "x";
    for (int i = 0; i < depth; ++i) {
        text =
            "<a x" + std::to_string(i) + "=\"" + std::to_string(i * 7919) + "\">" + text + "</a>";
    }
    return "<?xml?>" + text;
}

TEST(FailingMemory, StopsAParseWithoutALoss) {
    const std::string text = deepDocument(3000); // the check's stack and the name index grow
    const size_t failures = failuresOf(
        [&text] {
            XMLP_DOC *doc = xmlp_loadDoc(text.data(), static_cast<uint32_t>(text.size()), 1);
            if (doc != nullptr) {
                xmlp_releaseDoc(doc);
            }
        },
        "malloc failed.\r\n");
    EXPECT_GE(failures, 8u);
    EXPECT_LE(failures, 40u);
}

TEST(FailingMemory, LeavesNodesAsTheyWere) {
    XMLP_NODE *node = xmlp_initNode();
    ASSERT_EQ(xmlp_setNodeName(node, "n") + xmlp_setNodeValue(node, "v", 1) +
                  xmlp_addNodeAttr(node, "a", "1"),
              0);
    const std::string before = treeText(node);
    const auto unchanged = [&](auto action, size_t allocations) {
        std::string output;
        EXPECT_EQ(failEachAllocation([&] { output = outputOf(action); },
                                     [&] {
                                         EXPECT_NE(output.find("malloc failed."),
                                                   std::string::npos);
                                         EXPECT_EQ(treeText(node), before);
                                     }),
                  allocations);
    };
    unchanged([&] { xmlp_setNodeName(node, "n"); }, 1);
    unchanged([&] { xmlp_setNodeValue(node, "v", 1); }, 1);
    unchanged([&] { xmlp_setNodeAttr(node, "a", "1"); }, 1);
    unchanged(
        [&] {
            if (xmlp_addNodeAttr(node, "b", "2") == 0) {
                xmlp_delNodeAttr(node, "b");
            }
        },
        3);
    unchanged(
        [&] {
            char *value = nullptr;
            if (xmlp_getNodeAttr(node, "a", &value) == 0) {
                std::free(value);
            }
        },
        1);
    unchanged(
        [&] {
            char *name = nullptr;
            XMLP_ATTR *attrs = nullptr;
            if (_getNameAttr("t x=\"1\" y=\"\">", '>', &name, &attrs, 0, nullptr) == 0) {
                std::free(name);
                xmlp_freeAttrList(attrs);
            }
            EXPECT_TRUE(name != nullptr || attrs == nullptr);
        },
        6);
    xmlp_delDtree(node);
}

TEST(FailingMemory, LeavesTheModelEmpty) {
    const TemporaryFolder folder;
    const std::string path = folder.path("image");
    writeFile(path, packImage(smallDocument(
                        appElement(1, "one", "<dnsKwList><dnsKw>k</dnsKw></dnsKwList>"))));
    ASSERT_EQ(appmngr_checkDbPath(path.c_str()), 0);
    int result = 0;
    const size_t failures = failuresOf(
        [&result] {
            result = appmngr_load_database();
            if (result == 0) {
                appmngr_dbReInit();
            }
            EXPECT_EQ(g_appmngr_appDb.rule, nullptr);
            EXPECT_EQ(g_appmngr_appDb.ruleCount + g_appmngr_appDns.count, 0u);
        },
        "");
    EXPECT_EQ(result, 0);
    EXPECT_GE(failures, 12u);
}

TEST(FailingMemory, IsToldByTheLoad) {
    int result = 0;
    FailingAllocation failing(1);
    EXPECT_EQ(outputOf([&] { result = _appmngr_readFromDatabase(); }),
              "[Error](appmngr_file_alloc) 2400: malloc memory faild.\n"
              "[Error](_appmngr_readFromDatabase) 2564: appmngr_file_alloc failed\n");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(g_appmngr_appDescXml, nullptr);
}

} // namespace
