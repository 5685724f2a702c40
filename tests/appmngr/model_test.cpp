// What a document does to the model: counting, allocation, the walk, reset and lookups.

#include "tests/appmngr/model_fixture.h"

namespace {

TEST_F(Model, IsFilledFromADocument) {
    ASSERT_EQ(load(smallDocument()), 0);
    const std::string smallModel = modelText();
    forEachCase("model.cases", [&](const Case &test) {
        const std::string apps = test.text("apps", appElement(1, "one", test.text("more")));
        EXPECT_EQ(load(test.text("document", smallDocument(apps, test.text("types")))),
                  test.number("result"));
        EXPECT_EQ(printed, test.lines("printed"));
        EXPECT_EQ(modelText(), test.has("model") ? test.lines("model") : smallModel);
        const APPMNGR_COUNTER &counter = g_appmngr_counter;
        std::string counts = std::to_string(counter.tupleCnt);
        for (const uint32_t count : {counter.appCnt, counter.appTypeCnt, counter.descAppCnt,
                                     counter.descAppTypeCnt, counter.langCnt, counter.dnsKwCnt}) {
            counts.append(" ").append(std::to_string(count));
        }
        EXPECT_EQ(counts, test.text("counts", counts));
    });
}

TEST_F(Model, StoresTuplesOrRefusesThemWithALine) {
    forEachCase("tuple.cases", [this](const Case &test) {
        const std::string rule =
            "<rule><tupleList><tuple>" + test.text("text") + "</tuple></tupleList></rule>";
        ASSERT_EQ(load(smallDocument("<app><id>1</id><ruleList>" + rule + "</ruleList></app>")), 0);
        EXPECT_EQ(printed, test.lines("printed"));
        EXPECT_EQ(g_appmngr_appDb.ruleCount, test.has("printed") ? 0u : 1u);
        EXPECT_EQ(endpoints(g_appmngr_appDb.rule[0]), test.text("stored"));
    });
}

TEST_F(Model, StoresTuplesInCountedRecords) {
    ASSERT_EQ(load(smallDocument()), 0);
    XMLP_NODE node = {};
    EXPECT_EQ(_appmngr_xmlnode_handler_tuple(&node, reinterpret_cast<void *>(1)), -1);
    uint32_t tuples = UINT32_MAX;
    g_appmngr_counter.ruleIdx = 1;
    EXPECT_EQ(outputOf([&] { _appmngr_xmlnode_handler_tuple(&node, &tuples); }), "")
        << "their sum does not wrap";
    tuples = 0;
    EXPECT_EQ(outputOf([&] { _appmngr_xmlnode_handler_tuple(&node, &tuples); }), "");
}

TEST_F(Model, KnowsTheByteOrderMarks) {
    const std::pair<std::string, int> cases[] = {{"\xEF\xBB\xBF", 1}, {"\xEF\xBB", 0},
                                                 {"\xFF\xFE", 2},     {"\xFE\xFF", 3},
                                                 {"\xFE", 0},         {"<a/>", 0}};
    for (const auto &[text, type] : cases) {
        const std::vector<unsigned char> exact(text.begin(), text.end());
        EXPECT_EQ(appmngr_getBomType(exact.data(), static_cast<int>(exact.size())), type) << text;
    }
}

TEST_F(Model, CallsEveryRowOfATable) {
    const auto handler = [](XMLP_NODE *, void *param) { return ++*static_cast<int *>(param); };
    const APPMNGR_HANDLER_INFO table[] = {
        {"A", handler}, {"b", handler}, {"a", nullptr}, {"a", handler}, {nullptr, nullptr}};
    std::string name = "a";
    XMLP_NODE node = {};
    node.name = name.data();
    int calls = 0;
    EXPECT_EQ(appmngr_childnode_handler(&node, &calls), 0) << "an empty element is passed over";
    node.type = XMLP_TYPE_LEAF;
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(appmngr_childnode_handler(&node, &calls), -1); }),
              "[Error](appmngr_childnode_handler) 1894: Null pHandlerInfo\n");
    XMLP_NODE parent = {};
    parent.firstChild = &node;
    EXPECT_NE(outputOf([&] { appmngr_xmlnode_handler(&parent, &calls); }), "");
    appmngr_setHandlerInfo(table);
    EXPECT_EQ(appmngr_getHandlerInfo(), table);
    EXPECT_EQ(appmngr_childnode_handler(&node, &calls), 0);
    appmngr_setHandlerInfo(nullptr);
    EXPECT_EQ(calls, 2);
}

TEST_F(Model, TellsWhenItFreesKeywords) {
    const std::string keyword = "<dnsKwList><dnsKw>k</dnsKw></dnsKwList>";
    ASSERT_EQ(load(smallDocument(appElement(1, "x", keyword))), 0);
    EXPECT_NE(outputOf([] { appmngr_dbReInit(); }), "");
    EXPECT_EQ(outputOf([] { appmngr_dbReInit(); }), "");
    EXPECT_EQ(g_appmngr_counter.appIdx, 0u);
    EXPECT_EQ(modelText(), "ver '' model '' expired ''\n");
}

TEST_F(Model, IsEmptyWithoutItsArraysWhateverTheCountersSay) {
    ASSERT_EQ(load(smallDocument()), 0);
    _appmngr_free_for_appdb();
    EXPECT_EQ(_appmngr_getAppById(1), nullptr);
    EXPECT_EQ(outputOf([] { appmngr_dumpAppList(); }).find("cnt = 1"), std::string::npos);
    EXPECT_EQ(_appmngr_alloc_for_appdb(), 0);
    EXPECT_EQ(_appmngr_alloc_for_appdb(), 0) << "what was obtained before is released";
}

TEST_F(Model, HasRoomForDescriptions) {
    EXPECT_EQ(_appmngr_alloc_for_appdesc(), -1);
    g_appmngr_counter.descAppCnt = 2;
    g_appmngr_counter.descAppTypeCnt = 1;
    EXPECT_EQ(_appmngr_alloc_for_appdesc(), 0);
    EXPECT_EQ(g_appmngr_appDesc.app[1].id, 0);
}

TEST_F(Model, TakesTextsOfElements) {
    std::string value = std::string("12345678901234567890") + '\0' + "x";
    XMLP_NODE node = {};
    int32_t number = -5;
    EXPECT_EQ(_appmngr_getNodeInt(&node, &number), 0);
    EXPECT_EQ(number, 0);
    node.value = value.data();
    node.valueSize = static_cast<uint32_t>(value.size());
    EXPECT_STREQ(_appmngr_getNodeValue(&node), "12345678901234567890");
    std::string cut(14, '#');
    EXPECT_EQ(_appmngr_getNodeStr(&node, cut.data(), 13), 0);
    EXPECT_EQ(cut, std::string("123456789012\0#", 14));
}

TEST_F(Model, TakesIntegersOfAnySize) {
    // clang-format off
    std::pair<std::string, int32_t> cases[] = {
        {" \v+7x", 7}, {"+-7", 0}, {"-", 0}, {"-2147483649", 2147483647},
        {"9223372036854775807", -1}, {"9223372036854775808", -1}, {"-9223372036854775808", 0},
        {"18446744073709551617", -1}, {"-99999999999999999999", 0},
    };
    // clang-format on
    for (auto &[text, expected] : cases) {
        XMLP_NODE node = {};
        node.value = text.data();
        node.valueSize = static_cast<uint32_t>(text.size());
        int32_t number = 1;
        EXPECT_EQ(_appmngr_getNodeInt(&node, &number), 0);
        EXPECT_EQ(number, expected) << text;
    }
}

TEST_F(Model, HasAStamp) {
    std::string text(APPMNGR_STAMP_SIZE, '#');
    EXPECT_EQ(appmngr_getStampStr(text.data()), 0);
    EXPECT_STREQ(text.c_str(), "0#0000-00-00 00:00:00");
}

} // namespace
