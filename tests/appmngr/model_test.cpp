// What a document does to the model: counting, allocation, the walk, reset and lookups.

#include "tests/appmngr/model_fixture.h"
#include "tests/support/trees.h"

namespace {

std::string documentOf(const Case &test) {
    const std::string apps = test.text("apps", appElement(1, "one", test.text("more")));
    return test.text("document", smallDocument(apps, test.text("types")));
}

TEST_F(Model, IsFilledFromADocument) {
    ASSERT_EQ(load(smallDocument()), 0);
    const std::string smallModel = modelText();
    forEachCase("model.cases", [&](const Case &test) {
        EXPECT_EQ(load(documentOf(test)), test.number("result"));
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

std::vector<APPMNGR_HANDLER_INFO> copiedTable() {
    const APPMNGR_HANDLER_INFO *end = g_appmngr_nodeHandlers;
    while (end->name != nullptr) {
        ++end;
    }
    return {g_appmngr_nodeHandlers, end + 1};
}

// The steps of a load after the text is there, with a table of the caller's.
void fill(std::string document, const std::vector<APPMNGR_HANDLER_INFO> &table) {
    appmngr_dbReInit();
    document.erase(0, document.find('<')); // a byte-order mark
    const Doc doc = parseStatic(document);
    XMLP_NODE *root = doc->tree->rootNode;
    appmngr_parseThroughXML("root", root);
    if (_appmngr_alloc_for_appdb() != 0) {
        return;
    }
    for (uint32_t i = 0; i < g_appmngr_appDb.appTypeCount; ++i) {
        g_appmngr_appDb.appType[i].id = g_appmngr_appTypeId[i];
    }
    appmngr_setHandlerInfo(table.data());
    appmngr_xmlnode_handler(root, nullptr);
    appmngr_setHandlerInfo(nullptr);
    g_appmngr_appDb.ruleCount = g_appmngr_counter.ruleIdx;
    g_appmngr_appDb.appTypeCount = g_appmngr_counter.appTypeIdx;
    g_appmngr_appDb.appCount = g_appmngr_counter.appIdx;
}

const char *nameOf(APPMNGR_EFFECT_CODE code) {
    static constexpr const char *names[] = {
        "ELSEWHERE", "TOO_DEEP",   "NO_ELEMENTS", "NO_RECORD",      "NO_ID",
        "NO_TUPLE",  "REPEATED",   "NO_TEXT",     "TOO_LONG",       "TEXT",
        "PORT",      "NOT_NUMBER", "IDENTIFIER",  "LATE_IDENTIFIER"};
    return names[code];
}

void collectEffect(const APPMNGR_EFFECT *effect, void *context) {
    const std::string text = effect->text != nullptr ? std::string(effect->text, effect->size) : "";
    *static_cast<std::string *>(context) += std::string(effect->node->name) + ' ' +
                                            nameOf(effect->code) + ' ' +
                                            std::to_string(effect->number) + " '" + text + "'\n";
}

// A listener changes nothing either.
TEST_F(Model, IsFilledInTheSameWayByACopyOfTheTable) {
    const auto table = copiedTable();
    std::string effects;
    appmngr_setEffectListener(collectEffect, &effects);
    forEachCase("model.cases", [&](const Case &test) {
        if (test.number("result") != 0) {
            return;
        }
        load(documentOf(test));
        const std::string expected = test.has("copied") ? test.lines("copied") : modelText();
        outputOf([] { appmngr_dbReInit(); });
        EXPECT_EQ(outputOf([&] { fill(documentOf(test), table); }), printed);
        EXPECT_EQ(modelText(), expected);
    });
    appmngr_setEffectListener(nullptr, nullptr);
}

TEST_F(Model, TellsAListenerOfEffects) {
    forEachCase("effects.cases", [&](const Case &test) {
        std::string effects;
        appmngr_setEffectListener(collectEffect, &effects);
        EXPECT_EQ(load(documentOf(test)), 0);
        appmngr_setEffectListener(nullptr, nullptr);
        EXPECT_EQ(effects, test.lines("effects"));
    });
}

// As deep as a text can be; the containers nest in one another in any order.
TEST_F(Model, IsFilledFromAnyDepthByACallersTable) {
    constexpr int levels = 300'000;
    const std::pair<const char *, const char *> names[] = {
        {"<ori>", "</ori>"}, {"<segment>", "</segment>"}, {"<typeIdList>", "</typeIdList>"}};
    std::string begin;
    std::string end;
    for (int i = 0; i < levels; ++i) {
        begin += names[i % 3].first;
        end += names[(levels - 1 - i) % 3].second;
    }
    const std::string deep = begin + "<typeId>1</typeId><typeId>9</typeId>" + end;
    const std::string document = smallDocument(appElement(1, "one", deep));
    EXPECT_EQ(load(document), 0);
    EXPECT_EQ(printed, "") << "a load stops at 64 levels";
    const std::string line =
        "[Error](_appmngr_xmlnode_handler_typeid) 1102: _appmngr_getAppTypeBydId FAILED\n";
    EXPECT_EQ(outputOf([&] { fill(document, copiedTable()); }), line);
    EXPECT_EQ(appmngr_bitmap_test(g_appmngr_appDb.appType[0].appBitmap, 1), 1);
}

// A row of the caller's own is called wherever its element stands, and may walk on by itself; what it
// comes to behaves as it does in any walk.
TEST_F(Model, IsFilledUnderHandlersOfACaller) {
    auto table = copiedTable();
    static std::string seen;
    const auto walkOn = [](XMLP_NODE *node, void *param) {
        seen += node->name;
        return appmngr_xmlnode_handler(node, param);
    };
    const auto look = [](XMLP_NODE *node, void *) {
        seen += std::string(node->value, node->valueSize);
        return 0;
    };
    table.insert(table.begin(), {{"tupleList", look}, {"shelf", walkOn}, {"ver", look}});
    std::string visits;
    appmngr_setVisitor(
        [](const XMLP_NODE *, APPMNGR_VISIT visit, void *context) {
            static_cast<std::string *>(context)->append(std::to_string(visit));
        },
        &visits);
    const std::string more = "<shelf><typeId>1</typeId><app><id>7</id></app><ver>2</ver><x>x</x>"
                             "<shelf><name>deep</name></shelf></shelf><shelf/>";
    outputOf([&] { fill(smallDocument(appElement(1, "one", more)), table); });
    appmngr_setVisitor(nullptr, nullptr);
    EXPECT_EQ(seen, "1.0shelf2shelf");
    EXPECT_EQ(modelText(), "ver '2' model '' expired ''\napp 1 'deep' visible 0\n"
                           "type 1 '' has 1\nrule 1: 6 0.0.0.0:0 0.0.0.0:80\n");
    EXPECT_EQ(visits, "000000000000000302001");
}

// Where a tree begins below the database, the records are all there is to go by.
TEST_F(Model, IsFilledByHandlersCalledOnPartsOfADocument) {
    ASSERT_EQ(load(smallDocument()), 0);
    g_appmngr_counter.appIdx = g_appmngr_counter.ruleIdx = 0;
    using Handler = int (*)(XMLP_NODE *, void *);
    const std::pair<const char *, Handler> parts[] = {
        {"<typeId>1</typeId>", _appmngr_xmlnode_handler_typeid},
        {"<visible>5</visible>", _appmngr_xmlnode_handler_visible},
        {"<rule><tupleList><tuple>udp 0:0 0:9</tuple></tupleList><ori><end>6</end></ori></rule>",
         _appmngr_xmlnode_handler_rule},
        {"<app><id>7</id><name>part</name></app>", _appmngr_xmlnode_handler_app},
    };
    appmngr_setHandlerInfo(g_appmngr_nodeHandlers);
    for (const auto &[text, handler] : parts) {
        const Doc doc = parseStatic(text);
        EXPECT_EQ(handler(doc->tree->rootNode->firstChild, nullptr), 0) << text;
        EXPECT_EQ(appmngr_getHandlerInfo(), g_appmngr_nodeHandlers);
    }
    appmngr_setHandlerInfo(nullptr);
    EXPECT_EQ(modelText(), "ver '1.0' model '' expired ''\napp 7 'part' visible 5\n"
                           "type 1 '' has 1\nrule 1: 17 0.0.0.0:0 0.0.0.0:9, ori 0 0 6 0 '' ''\n");
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

// Each in a tuple of the plainest form but for that, and in one in capitals, with each fault in either place
// and ports that are numbers only to who reads them so.
TEST_F(Model, RefusesTuplesWithWrongAddresses) {
    for (const std::string address : {"01.2.3.4",
                                      "001.2.3.4",
                                      "1.2.3.04",
                                      "00",
                                      "00.0.0.0",
                                      "0.0",
                                      "1",
                                      "1.2.3",
                                      "1.2.3.4.5",
                                      "0.0.0.0.0",
                                      "1..3.4",
                                      ".1.2.3",
                                      "1.2.3.",
                                      "256.2.3.4",
                                      "1.2.3.256",
                                      "4294967297.2.3.4",
                                      "1.2.3.18446744073709551620",
                                      "1.2.3.4x",
                                      "+1.2.3.4",
                                      "x"}) {
        for (const std::string protocol : {"tcp ", "TCP "}) {
            const std::string tuples[] = {protocol + address + ":01 " + address + ":02",
                                          protocol + address + ":1 0:2",
                                          protocol + "9.8.7.6:5 " + address + ":2"};
            std::string lines;
            const std::string head = "[Error](_appmngr_xmlnode_handler_tuple) ";
            lines.append(head).append("1318: inet_pton failed! str = [" + address + "]\n");
            lines += lines;
            lines.append(head).append("1362: inet_pton failed, str = [" + address + "]!\n");
            std::string elements;
            for (const std::string &tuple : tuples) {
                elements += "<tuple>" + tuple + "</tuple>";
            }
            ASSERT_EQ(load(smallDocument(appElement(1, "one",
                                                    "<ruleList><rule><tupleList>" + elements +
                                                        "</tupleList></rule></ruleList>"))),
                      0);
            EXPECT_EQ(printed, lines);
            EXPECT_EQ(g_appmngr_appDb.ruleCount, 1u);
            EXPECT_EQ(endpoints(g_appmngr_appDb.rule[1]), "6 9.8.7.6:5 0.0.0.0:0");
        }
    }
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
