// Every allocation fails once: the failure is told, nothing is left behind, nothing is half done.

#include "appmngr/appmngr_internal.h"
#include "tests/support/documents.h"
#include "tests/support/failing_memory.h"
#include "tests/support/files.h"
#include "tests/support/images.h"
#include "xmlp/xmlp_internal.h"

#include <cstdlib>

namespace {

// Fails each allocation of an action, which frees what it is given: every failure is told by a text
// that has `line` in it and leaves no block. Gives the number of failures.
size_t failuresOf(const std::function<void()> &action, const std::string &line) {
    const size_t before = liveBlocks();
    std::string output;
    return failEachAllocation([&] { output = outputOf(action); },
                              [&] {
                                  EXPECT_EQ(liveBlocks(), before);
                                  EXPECT_NE(output.find(line), std::string::npos) << output;
                              });
}

TEST(FailingMemory, StopsAParseWithoutALoss) {
    std::string text; // deep enough for the check's stack and the name index to grow
    for (int i = 0; i < 3000; ++i) {
        const std::string number = std::to_string(i);
        text = "<a x" + number + "=\"7" + number + "\">v" + text + "</a>";
    }
    text.insert(0, "<?xml?>");
    const size_t failures = failuresOf([&text] { parseStatic(text); }, "malloc failed.\r\n");
    EXPECT_GE(failures, 8u);
    EXPECT_LE(failures, 40u);
}

TEST(FailingMemory, LeavesNodesAsTheyWere) {
    XMLP_NODE *node = xmlp_initNode();
    xmlp_setNodeName(node, "n");
    xmlp_setNodeValue(node, "v", 1);
    xmlp_addNodeAttr(node, "a", "1");
    const auto expectFailures = [node](size_t count, const std::function<void()> &action) {
        const auto watched = [node, &action] {
            action();
            EXPECT_EQ(treeText(node), "n:N[a=1]\"v\"");
        };
        EXPECT_EQ(failuresOf(watched, "malloc failed."), count);
    };
    expectFailures(1, [node] { xmlp_setNodeName(node, "n"); });
    expectFailures(1, [node] { xmlp_setNodeValue(node, "v", 1); });
    expectFailures(1, [node] { xmlp_setNodeAttr(node, "a", "1"); });
    expectFailures(3, [node] {
        xmlp_addNodeAttr(node, "b", "2");
        xmlp_delNodeAttr(node, "b");
    });
    expectFailures(1, [node] {
        char *value = nullptr;
        xmlp_getNodeAttr(node, "a", &value);
        std::free(value);
    });
    expectFailures(6, [] {
        char *name = nullptr;
        XMLP_ATTR *attrs = nullptr;
        _getNameAttr("t x=\"1\" y=\"\">", '>', &name, &attrs, 0, nullptr);
        EXPECT_EQ(name == nullptr, attrs == nullptr);
        std::free(name);
        xmlp_freeAttrList(attrs);
    });
    xmlp_delDtree(node);
}

TEST(FailingMemory, LosesNothingOfADynamicDocument) {
    const std::string text = "<?x?><r a=\"1\"><l><item b=\"2\">x</item><item/></l><v>t</v></r>";
    EXPECT_GE(failuresOf([&text] { parseDynamic(text); }, ""), 20u);

    const Doc doc = parseDynamic(text);
    XMLP_DOC *d = doc.get();
    const std::string before = documentText(d);
    char letter[] = "y";
    const XMLP_VALUE value = {1, letter};
    const XMLP_ATTR_PAIR attr = {"c", letter};
    const XMLP_ITEM item = {1, &attr, 1, letter};
    const uint32_t first = 0;
    const std::function<void()> actions[] = {
        [d] { xmlp_freeValueArray(xmlp_getValue(d, "/r/v"), 1); },
        [d] { xmlp_setValue(d, "/r/v", "t", 1); },
        [&] {
            if (xmlp_add(d, "/r", 0, "n", &value, &attr, 1) == 0) {
                xmlp_delete(d, "/r/n");
            }
        },
        [&] {
            if (xmlp_addItem(d, "/r/l", &item, 0, 1) == 1) {
                xmlp_deleteItem(d, "/r/l", XMLP_POS_RANGE, &first, 1);
            }
        },
        [&] {
            uint32_t count = 0;
            XMLP_VALUE *values = xmlp_getItemValue(d, "/r/l", XMLP_POS_RANGE, &first, 2, &count);
            count > 0 ? xmlp_freeValueArray(values, count) : std::free(values);
        },
        [&] {
            XMLP_ATTR_PAIR asked = {"b", letter};
            letter[0] = '2';
            uint32_t count = 0;
            XMLP_VALUE *values = xmlp_getItemValueByAttr(d, "/r/l", &asked, 1, &count);
            xmlp_freeValueArray(values, values != nullptr ? count : 0);
        },
        [d] {
            uint32_t length = 0;
            std::free(xmlp_dumpDoc(d, 0, &length));
        },
    };
    for (const auto &action : actions) {
        EXPECT_GE(failuresOf(action, "malloc failed."), 1u);
        EXPECT_EQ(documentText(d), before);
    }
}

TEST(FailingMemory, LeavesTheModelEmpty) {
    const TemporaryFolder folder;
    const std::string path = folder.path("image");
    const std::string keyword = "<dnsKwList><dnsKw>k</dnsKw></dnsKwList>";
    writeFile(path, packImage(smallDocument(appElement(1, "one", keyword))));
    ASSERT_EQ(appmngr_checkDbPath(path.c_str()), 0);
    const auto loadAndFree = [] {
        if (appmngr_load_database() == 0) {
            appmngr_dbReInit();
        }
        EXPECT_EQ(g_appmngr_appDb.rule, nullptr);
        EXPECT_EQ(g_appmngr_appDb.ruleCount + g_appmngr_appDns.count, 0u);
    };
    EXPECT_GE(failuresOf(loadAndFree, ""), 12u);
}

TEST(FailingMemory, LeavesNoneOfTheBuffersOfALoad) {
    const auto obtain = [] { return appmngr_file_alloc() == 0 ? appmngr_file_free() : -1; };
    EXPECT_EQ(failuresOf(obtain, "[Error](appmngr_file_alloc) 2400: malloc memory faild.\n"), 3u);
}

} // namespace
