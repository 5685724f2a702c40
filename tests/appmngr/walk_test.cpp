// What the elements of a document do to the model, and what is passed over.

#include "tests/appmngr/model_fixture.h"

namespace {

std::string element(const std::string &name, const std::string &content) {
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string ruleElement(const std::string &tuples, const std::string &rest = "") {
    return element("ruleList", element("rule", element("tupleList", tuples) + rest));
}

// A name of every application and every type in order, as "id:name ".
std::string apps() {
    std::string text;
    for (uint32_t i = 0; i < g_appmngr_appDb.appCount; ++i) {
        text += std::to_string(g_appmngr_app[i].id) + ":" + g_appmngr_app[i].name + " ";
    }
    return text;
}

std::string types() {
    std::string text;
    for (uint32_t i = 0; i < g_appmngr_appDb.appTypeCount; ++i) {
        const APPMNGR_APPTYPE &type = g_appmngr_appDb.appType[i];
        text += std::to_string(type.id) + ":" + type.name + " ";
    }
    return text;
}

TEST_F(Model, KnowsTheByteOrderMarks) {
    const auto type = [](const char *text, int length) {
        return appmngr_getBomType(reinterpret_cast<const unsigned char *>(text), length);
    };
    EXPECT_EQ(type("\xEF\xBB\xBF", 3), 1);
    EXPECT_EQ(type("\xEF\xBB\xBF", 2), 0);
    EXPECT_EQ(type("\xFF\xFE", 2), 2);
    EXPECT_EQ(type("\xFE\xFF", 2), 3);
    EXPECT_EQ(type("\xFE\xFF", 1), 0);
    EXPECT_EQ(type("<a/>", 4), 0);

    EXPECT_EQ(load("\xEF\xBB\xBF" + smallDocument()), 0);
    EXPECT_EQ(load("\xFF\xFE" + smallDocument()), 0);
    EXPECT_EQ(load("\xFE\xFF\xEF\xBB\xBF" + smallDocument()), 0);
}

TEST_F(Model, HoldsEverythingOfADocument) {
    const std::string features = "<enable>1</enable><segment><start>2</start><end>3</end>"
                                 "<minlength>4</minlength></segment><dpiType>text</dpiType>"
                                 "<dpiCode>&lt;GET&gt;</dpiCode>";
    const std::string document =
        "<?xml version=\"1.0\"?><APPDB><ver>1.2.3-too-long</ver><proModel>m</proModel>"
        "<expired>2030</expired><appList>" +
        appElement(1, "first") + "<app><ID>7</ID><name>" + std::string(200, 'n') +
        "</name><visible>-1</visible>"
        "<typeIdList><typeId>20</typeId><typeId>20</typeId><typeId>10</typeId></typeIdList>" +
        ruleElement("<tuple>tcp 10.0.0.1:1 0:2</tuple><tuple>udp 0:3 10.0.0.2:4</tuple>",
                    element("ori", features) +
                        element("rep", "<start>9</start><segment><segment><end>8</end></segment>"
                                       "<dpiCode>x</dpiCode></segment>")) +
        "<dnsKwList><dnsKw>a keyword too long</dnsKw><dnsKw>b</dnsKw></dnsKwList></app>"
        "</appList><appTypeList><appType><id>10</id><name>ten</name></appType>"
        "<appType><id>20</id><name>twenty</name></appType></appTypeList></APPDB>";
    ASSERT_EQ(load(document), 0);
    EXPECT_EQ(printed, "");
    EXPECT_STREQ(g_appmngr_appDb.ver, "1.2.3-too-l");
    EXPECT_STREQ(g_appmngr_appDb.proModel, "m");
    EXPECT_STREQ(g_appmngr_appDb.expired, "2030");
    EXPECT_EQ(apps(), "1:first 7:" + std::string(127, 'n') + " ");
    EXPECT_EQ(g_appmngr_app[1].visible, -1);
    EXPECT_EQ(types(), "10:ten 20:twenty ");
    EXPECT_EQ(appmngr_bitmap_test(g_appmngr_appDb.appType[1].appBitmap, 7), 1);
    EXPECT_EQ(g_appmngr_appDb.appType[0].appBitmap[0], 1u << 7);

    ASSERT_EQ(g_appmngr_appDb.ruleCount, 3u);
    const APPMNGR_RULE &rule = g_appmngr_appDb.rule[1];
    EXPECT_EQ(rule.appid, 7);
    EXPECT_EQ(rule.sport, 1);
    EXPECT_EQ(rule.orig.enable, 1);
    EXPECT_EQ(rule.orig.start, 2);
    EXPECT_EQ(rule.orig.end, 3);
    EXPECT_EQ(rule.orig.minlength, 4);
    EXPECT_STREQ(rule.orig.dpiType, "text");
    EXPECT_STREQ(rule.orig.dpiCode, "<GET>");
    EXPECT_EQ(rule.reply.start, 9);
    EXPECT_EQ(rule.reply.end, 8);
    EXPECT_STREQ(rule.reply.dpiCode, "x");
    const APPMNGR_RULE &second = g_appmngr_appDb.rule[2];
    EXPECT_EQ(second.appid, 7);
    EXPECT_EQ(second.proto, 17);
    EXPECT_EQ(second.dport, 4);
    EXPECT_EQ(std::memcmp(&second.orig, &rule.orig, sizeof rule.orig), 0);
    EXPECT_EQ(std::memcmp(&second.reply, &rule.reply, sizeof rule.reply), 0);

    ASSERT_EQ(g_appmngr_appDns.count, 2u);
    EXPECT_STREQ(g_appmngr_appDns.rule[0].dnsKw, "a keyword too l");
    EXPECT_EQ(g_appmngr_appDns.rule[1].appid, 7);
}

TEST_F(Model, FollowsDocumentOrder) {
    // What comes before an application's id belongs to the identifier that its record held before.
    const std::string app = "<app><typeIdList><typeId>1</typeId></typeIdList>" +
                            ruleElement("<tuple>icmp 0:0 0:0</tuple>") +
                            "<dnsKwList><dnsKw>k</dnsKw></dnsKwList><id>5</id><id>6</id></app>";
    ASSERT_EQ(load(smallDocument(app)), 0);
    EXPECT_EQ(apps(), "6: ");
    EXPECT_EQ(appmngr_bitmap_test(g_appmngr_appDb.appType[0].appBitmap, 0), 1);
    EXPECT_EQ(g_appmngr_appDb.rule[0].appid, 0);
    EXPECT_EQ(g_appmngr_appDns.rule[0].appid, 0);
}

TEST_F(Model, TellsOfMembershipsItCannotKeep) {
    const std::string unknown = "[Error](_appmngr_xmlnode_handler_typeid) 1102: "
                                "_appmngr_getAppTypeBydId FAILED\n";
    const auto member = [](int id, const char *type) {
        return appElement(id, "n", element("typeIdList", element("typeId", type)));
    };
    EXPECT_EQ(load(smallDocument(member(1, "9"))), 0);
    EXPECT_EQ(printed, unknown);
    EXPECT_EQ(load(smallDocument(member(4095, "1"))), 0);
    EXPECT_EQ(printed, "");
    for (const int id : {-1, 4096}) {
        EXPECT_EQ(load(smallDocument(member(id, "1"))), 0);
        EXPECT_EQ(printed, "[Error](_appmngr_xmlnode_handler_typeid) 1109: App id " +
                               std::to_string(id) + " can not be a member of type 1\n");
        EXPECT_EQ(appmngr_bitmap_isEmpty(g_appmngr_appDb.appType[0].appBitmap), 1);
    }
}

TEST_F(Model, PassesOverWhatStandsElsewhere) {
    const std::string stray = appElement(99, "stray");
    const std::string rule = "<rule><tupleList><tuple>udp 0:0 0:9</tuple></tupleList></rule>";
    const std::string feature = "<ori><start>99</start></ori>";
    const std::string member = "<typeId>1</typeId>";
    const std::string cases[] = {
        // inside the one application
        appElement(1, "one", stray),
        appElement(1, "one", rule),
        appElement(1, "one", feature),
        appElement(1, "one", member),
        appElement(1, "one", "<dnsKw>k</dnsKw><tuple>udp 0:0 0:9</tuple>"),
        appElement(1, "one", "<typeIdList><id>99</id><name>no</name></typeIdList>"),
        appElement(1, "one", "<ruleList>" + feature + "<tuple>udp 0:0 0:9</tuple></ruleList>"),
        appElement(1, "one",
                   "<ruleList><rule><id>99</id><tuple>udp 0:0 0:9</tuple>" + rule +
                       "<ori><id>99</id></ori><rep><id>99</id><name>no</name></rep>"
                       "<start>99</start></rule></ruleList>"),
        appElement(1, "one", "<ruleList><rule><ruleList>" + rule + "</ruleList></rule></ruleList>"),
        // beside it
        appElement(1, "one") + "<id>99</id><name>no</name>" + rule + feature,
        appElement(1, "one") + "<appList>" + stray + "</appList>",
        appElement(1, "one") + "</appList>" + stray + "<appTypeList>" + stray +
            "<id>99</id></appTypeList><typeIdList>" + member + "</typeIdList><appList>",
    };
    for (const std::string &app : cases) {
        ASSERT_EQ(load(smallDocument(app)), 0) << app;
        EXPECT_EQ(printed, "") << app;
        EXPECT_EQ(apps(), "1:one ") << app;
        EXPECT_EQ(types(), "1: ") << app;
        EXPECT_EQ(appmngr_bitmap_isEmpty(g_appmngr_appDb.appType[0].appBitmap), 1) << app;
        ASSERT_EQ(g_appmngr_appDb.ruleCount, 1u) << app;
        EXPECT_EQ(g_appmngr_appDb.rule[0].dport, 80) << app;
        EXPECT_EQ(g_appmngr_appDb.rule[0].orig.start, 0) << app;
        EXPECT_EQ(g_appmngr_appDns.count, 0u) << app;
    }
}

TEST_F(Model, WalksNoDeeperThanDocumentsGo) {
    // The small document with another version at its end, in containers that nest in any order.
    const auto versionUnder = [this](int levels) {
        std::string opening;
        std::string closing;
        for (int i = 0; i < levels; ++i) {
            opening += "<segment>";
            closing += "</segment>";
        }
        std::string document = smallDocument();
        document.insert(document.rfind("</AppDB>"), opening + element("ver", "2.0") + closing);
        EXPECT_EQ(load(document), 0);
        return std::string(g_appmngr_appDb.ver);
    };
    EXPECT_EQ(versionUnder(0), "2.0");
    EXPECT_EQ(versionUnder(60), "2.0");
    EXPECT_EQ(versionUnder(100'000), "1.0");
}

TEST_F(Model, ReusesTheRecordOfARuleWithoutTuples) {
    const std::string rules = "<ruleList><rule><tupleList><tuple>gre 0:0 0:1</tuple></tupleList>"
                              "<ori><start>5</start><end>6</end></ori></rule><rule><tupleList>"
                              "<tuple>tcp 0:0 0:2</tuple></tupleList><ori><end>7</end></ori></rule>"
                              "<rule><ori><start>8</start></ori></rule></ruleList>";
    ASSERT_EQ(load(smallDocument("<app><id>1</id>" + rules + "</app>")), 0);
    ASSERT_EQ(g_appmngr_appDb.ruleCount, 1u);
    EXPECT_EQ(g_appmngr_appDb.rule[0].dport, 2);
    EXPECT_EQ(g_appmngr_appDb.rule[0].orig.start, 5);
    EXPECT_EQ(g_appmngr_appDb.rule[0].orig.end, 7);
}

TEST_F(Model, CallsEveryRowOfATable) {
    static int calls;
    calls = 0;
    const auto handler = [](XMLP_NODE *, void *param) {
        calls += *static_cast<int *>(param);
        return -1;
    };
    const APPMNGR_HANDLER_INFO table[] = {
        {"A", handler}, {"b", handler}, {"a", nullptr}, {"a", handler}, {nullptr, nullptr},
    };
    char name[] = "a";
    XMLP_NODE node = {};
    node.name = name;
    int step = 1;
    EXPECT_EQ(appmngr_childnode_handler(&node, &step), 0) << "an empty element is passed over";
    node.type = XMLP_TYPE_LEAF;
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(appmngr_childnode_handler(&node, &step), -1); }),
              "[Error](appmngr_childnode_handler) 1894: Null pHandlerInfo\n");
    appmngr_setHandlerInfo(table);
    EXPECT_EQ(appmngr_childnode_handler(&node, &step), 0);
    appmngr_setHandlerInfo(nullptr);
    EXPECT_EQ(calls, 2);
}

} // namespace
