// Databases that are held apart from the module.

#include "tests/appmngr/model_fixture.h"

#include <memory>
#include <thread>
#include <vector>

namespace {

struct Release {
    void operator()(APPMNGR_DATABASE *database) const { appmngr_freeDatabase(database); }
};

using Database = std::unique_ptr<APPMNGR_DATABASE, Release>;

class Held : public Model {
protected:
    static constexpr const char *emptyModel = "ver '' model '' expired ''\n";

    // Nothing is printed, not even by keywords that leave the module.
    static Database take() {
        Database database;
        EXPECT_EQ(outputOf([&] { database.reset(appmngr_takeDatabase()); }), "");
        return database;
    }

    Database loadAndTake(const std::string &document) {
        EXPECT_EQ(load(document), 0) << printed;
        return take();
    }
};

std::vector<int32_t> idsOf(const Database &database) {
    uint32_t count = 0;
    const APPMNGR_APP *apps = appmngr_databaseGetApps(database.get(), &count);
    std::vector<int32_t> ids;
    for (uint32_t i = 0; i < count; ++i) {
        ids.push_back(apps[i].id);
    }
    return ids;
}

TEST_F(Held, HasAllThatTheModuleHad) {
    const std::string keyword = "<dnsKwList><dnsKw>k</dnsKw></dnsKwList>";
    const std::string document =
        smallDocument(appElement(7, "seven", keyword) + appElement(7, "again"),
                      "<appType><id>3</id><name>three</name></appType>");
    ASSERT_EQ(load(document), 0);
    const std::string model = modelText();
    const APPMNGR_RULE *rules = appmngr_getAppDb()->rule;
    const Database database = take();
    ASSERT_NE(database, nullptr);
    EXPECT_EQ(modelText(), emptyModel);
    EXPECT_EQ(appmngr_getAppDb()->rule, nullptr);
    uint32_t count = 9;
    EXPECT_EQ(appmngr_getApps(&count), nullptr);
    EXPECT_EQ(g_appmngr_counter.appCnt + g_appmngr_counter.dnsKwIdx + count, 0u);
    EXPECT_EQ(take(), nullptr) << "there is nothing to take twice";

    const APPMNGR_APPDB &header = *appmngr_databaseGetAppDb(database.get());
    EXPECT_STREQ(header.ver, "1.0");
    EXPECT_EQ(header.rule, rules) << "handed over, not copied";
    EXPECT_EQ(header.ruleCount, 2u);
    EXPECT_EQ(idsOf(database), (std::vector<int32_t>{7, 7}));
    EXPECT_STREQ(appmngr_databaseGetAppById(database.get(), 7)->name, "seven");
    EXPECT_EQ(appmngr_databaseGetAppById(database.get(), 3), nullptr);
    EXPECT_STREQ(appmngr_databaseGetAppTypeById(database.get(), 3)->name, "three");
    EXPECT_EQ(appmngr_databaseGetAppTypeById(database.get(), 7), nullptr);
    const APPMNGR_APPDNS &dns = *appmngr_databaseGetAppDns(database.get());
    ASSERT_EQ(dns.count, 1u);
    EXPECT_STREQ(dns.rule[0].dnsKw, "k");

    ASSERT_EQ(load(document), 0);
    EXPECT_EQ(modelText(), model) << "the module loads as before";
}

TEST_F(Held, IsOnlyThereAfterALoad) {
    EXPECT_EQ(take(), nullptr);
    EXPECT_EQ(load("<AppDB/>"), -1);
    EXPECT_EQ(take(), nullptr);
    ASSERT_EQ(load(smallDocument()), 0);
    outputOf([] { appmngr_dbReInit(); });
    EXPECT_EQ(take(), nullptr);
    appmngr_freeDatabase(nullptr);
}

TEST_F(Held, StaysWhileOthersAreLoadedAndIsReadAnywhere) {
    std::vector<Database> databases;
    for (int id = 1; id <= 3; ++id) {
        databases.push_back(loadAndTake(smallDocument(appElement(id, std::to_string(id)))));
    }
    std::vector<std::thread> readers;
    for (int i = 0; i < 2; ++i) {
        readers.emplace_back([&] {
            for (int id = 1; id <= 3; ++id) {
                const Database &database = databases[static_cast<size_t>(id) - 1];
                EXPECT_EQ(idsOf(database), std::vector<int32_t>{id});
                EXPECT_EQ(appmngr_databaseGetAppById(database.get(), id)->name, std::to_string(id));
            }
        });
    }
    EXPECT_EQ(load("<a></b>"), -1);
    for (std::thread &reader : readers) {
        reader.join();
    }
    databases.erase(databases.begin() + 1);
    EXPECT_EQ(idsOf(databases[1]), std::vector<int32_t>{3});
}

} // namespace
