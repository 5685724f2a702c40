// Counting, allocation, reset and lookups.

#include "tests/appmngr/model_fixture.h"
#include "tests/support/files.h"

#include <array>
#include <csignal>
#include <sys/resource.h>

namespace {

std::string nested(const std::string &path, const std::string &text) {
    std::string opening;
    std::string closing;
    for (size_t begin = 0; begin < path.size();) {
        const size_t end = std::min(path.find('/', begin), path.size());
        const std::string name = path.substr(begin, end - begin);
        opening += "<" + name + ">";
        closing = "</" + name + ">" + closing;
        begin = end + 1;
    }
    return opening + text + closing;
}

TEST_F(Model, CountsAlongExactPaths) {
    const struct {
        std::string document;
        // tuples, apps, types, description apps and types, languages, keywords
        std::array<uint32_t, 7> counts;
    } cases[] = {
        {"<AppDB><appList><app/><app><id>1</id></app></appList></AppDB>", {0, 1}},
        {nested("APPDB/AppList/App/RuleList/Rule/TupleList/Tuple", "x"), {1, 1}},
        {nested("AppDB/appList/app/ruleList/rule/tuple", "x"), {0, 1}},
        {nested("AppDB/appList/app/dnsKwList/dnsKw", "x"), {0, 1, 0, 0, 0, 0, 1}},
        {nested("AppDB/appTypeList/appType/id", "7"), {0, 0, 1}},
        {"<AppDB><appTypeList><appType><id/><name>n</name></appType></appTypeList></AppDB>", {}},
        {nested("AppDB/app", "x"), {}},
        {nested("x/AppDB/appList/app", "x"), {}},
        {"<appdesc><applist><app>1</app></applist><apptypelist><apptype>2</apptype>"
         "</apptypelist><langcnt>3</langcnt></appdesc>",
         {0, 0, 0, 1, 1, 3}},
        {nested("AppDB/appList/" + std::string(128, 'n') + "/app", "x"), {}},
    };
    for (const auto &test : cases) {
        load(test.document);
        std::array<uint32_t, 7> counts;
        std::memcpy(counts.data(), &g_appmngr_counter, sizeof counts);
        EXPECT_EQ(counts, test.counts) << test.document;
    }
}

TEST_F(Model, NeedsATupleATypeAndAnApplication) {
    const std::string documents[] = {
        smallDocument("<app><id>1</id></app>"),
        smallDocument("", "<appType><name>n</name></appType>"),
        nested("AppDB/appTypeList/appType/id", "1"),
        nested("Other", "x"),
    };
    for (const std::string &document : documents) {
        EXPECT_EQ(load(document), -1) << document;
        EXPECT_EQ(printed,
                  "[Error](appmngr_analyzeDbFile) 2325: _appmngr_alloc_for_appdb failed\n");
        EXPECT_EQ(g_appmngr_appDb.ruleCount + g_appmngr_appDb.appTypeCount, 0u);
        EXPECT_EQ(g_appmngr_app, nullptr);
    }
    EXPECT_EQ(load(smallDocument()), 0);
    EXPECT_EQ(printed, "");
}

TEST_F(Model, StopsCountingATypeWhoseIdIsTooLong) {
    const std::string longId(512, '1');
    const std::string types = "<appType><id>" + longId +
                              "</id><id>5</id></appType>"
                              "<appType><id>" +
                              std::string(511, '0') + "</id></appType>";
    EXPECT_EQ(load(smallDocument("", types)), 0);
    EXPECT_EQ(g_appmngr_counter.appTypeCnt, 1u);
    EXPECT_EQ(g_appmngr_appTypeId[0], 0);
}

TEST_F(Model, Keeps64TypesAndTellsOfFurtherOnes) {
    std::string types;
    for (int id = 100; id < 166; ++id) {
        types += "<appType><id>" + std::to_string(id) + "</id></appType>";
    }
    EXPECT_EQ(load(smallDocument("", types)), 0);
    EXPECT_EQ(printed, "[Error](_appmngr_parseNode) 743: More than 64 app types, type 164 is "
                       "skipped\n[Error](_appmngr_parseNode) 743: More than 64 app types, type 165 "
                       "is skipped\n");
    EXPECT_EQ(g_appmngr_appDb.appTypeCount, 64u);
    EXPECT_EQ(g_appmngr_appDb.appType[63].id, 163);
}

TEST_F(Model, FindsTheFirstRecordOfAnIdentifier) {
    const std::string types = "<appType><id>4</id><name>a</name></appType>"
                              "<appType><id>4</id><name>b</name></appType>";
    ASSERT_EQ(load(smallDocument(appElement(3, "x") + appElement(3, "y"), types)), 0);
    EXPECT_STREQ(_appmngr_getAppTypeBydId(4)->name, "a");
    EXPECT_STREQ(_appmngr_getAppById(3)->name, "x");
    EXPECT_EQ(_appmngr_getAppTypeBydId(3), nullptr);
    EXPECT_EQ(_appmngr_getAppById(4), nullptr);
}

TEST_F(Model, TellsWhenItFreesKeywords) {
    const std::string notice = "**********************************\n"
                               "Free g_appmngr_appDns.rule\n"
                               "**********************************\n";
    ASSERT_EQ(load(smallDocument(appElement(1, "x", "<dnsKwList><dnsKw>k</dnsKw></dnsKwList>"))),
              0);
    EXPECT_EQ(printed, "");
    EXPECT_EQ(outputOf([] { appmngr_dbReInit(); }), notice);
    EXPECT_EQ(outputOf([] { appmngr_dbReInit(); }), "");
    EXPECT_EQ(g_appmngr_counter.appIdx, 0u);
}

TEST_F(Model, IsEmptyWithoutItsArraysWhateverTheCountersSay) {
    ASSERT_EQ(load(smallDocument()), 0);
    ASSERT_EQ(g_appmngr_counter.appCnt, 1u);
    _appmngr_free_for_appdb();
    EXPECT_EQ(_appmngr_getAppById(1), nullptr);
    EXPECT_EQ(_appmngr_getAppTypeBydId(1), nullptr);
    const TemporaryFolder folder;
    EXPECT_EQ(appmngr_saveIdAndName(folder.path("list").c_str()), 0);
    EXPECT_EQ(readFile(folder.path("list")), "\n");
    EXPECT_EQ(_appmngr_alloc_for_appdb(), 0);
    EXPECT_EQ(_appmngr_alloc_for_appdb(), 0) << "what was obtained before is released";
}

TEST_F(Model, HasRoomForDescriptions) {
    EXPECT_EQ(_appmngr_alloc_for_appdesc(), -1);
    g_appmngr_counter.descAppCnt = 2;
    g_appmngr_counter.descAppTypeCnt = 1;
    EXPECT_EQ(_appmngr_alloc_for_appdesc(), 0);
    EXPECT_EQ(g_appmngr_appDesc.app[1].id, 0);
    _appmngr_free_for_appdesc();
    EXPECT_EQ(g_appmngr_appDesc.app, nullptr);
}

TEST_F(Model, TakesTextsOfElements) {
    std::string value = std::string("12345678901234567890") + '\0' + "x";
    XMLP_NODE node = {};
    node.value = value.data();
    node.valueSize = static_cast<uint32_t>(value.size());
    char cut[12];
    EXPECT_EQ(_appmngr_getNodeStr(&node, cut, sizeof cut), 0);
    EXPECT_STREQ(cut, "12345678901");
    EXPECT_STREQ(_appmngr_getNodeValue(&node), "12345678901234567890");
    EXPECT_EQ(_appmngr_getNodeValue(nullptr), nullptr);
    EXPECT_EQ(_appmngr_getNodeStr(&node, nullptr, 1), -1);

    value.assign(512, '7');
    node.value = value.data();
    node.valueSize = 512;
    int32_t number = -5;
    EXPECT_EQ(_appmngr_getNodeInt(&node, &number), -1);
    EXPECT_EQ(number, -5);
    node.valueSize = 511;
    EXPECT_EQ(std::strlen(_appmngr_getNodeValue(&node)), 511u);

    node.value = nullptr;
    node.valueSize = 0;
    EXPECT_EQ(_appmngr_getNodeInt(&node, &number), 0);
    EXPECT_EQ(number, 0);
}

TEST_F(Model, HasAStamp) {
    char text[64];
    EXPECT_EQ(appmngr_getStampStr(text), 0);
    EXPECT_STREQ(text, "0#0000-00-00 00:00:00");
    EXPECT_EQ(appmngr_getStampStr(nullptr), -1);
}

TEST_F(Model, TellsWhenTheListCannotBeClosed) {
    const TemporaryFolder folder;
    const std::string path = folder.path("list");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual;
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit none = {0, usual.rlim_max};
    int result = 0;
    EXPECT_EQ(outputOf([&] {
                  setrlimit(RLIMIT_FSIZE, &none);
                  result = appmngr_saveIdAndName(path.c_str());
                  setrlimit(RLIMIT_FSIZE, &usual);
              }),
              "close " + path + " error!\n");
    EXPECT_EQ(result, -1);
}

} // namespace
