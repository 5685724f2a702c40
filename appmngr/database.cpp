// A database that a caller holds: the model's arrays without the module around them.

#include "appmngr/records.h"
#include "common/owned.h"

#include <utility>

using velda::appmngr::findById;

struct APPMNGR_DATABASE {
    APPMNGR_APPDB appDb;
    APPMNGR_APPDNS appDns;
    APPMNGR_APP *apps;
};

APPMNGR_DATABASE *appmngr_takeDatabase(void) {
    if (g_appmngr_appDb.rule == nullptr) {
        return nullptr;
    }
    velda::Owned<APPMNGR_DATABASE> database(
        static_cast<APPMNGR_DATABASE *>(std::malloc(sizeof(APPMNGR_DATABASE))));
    if (database == nullptr) {
        appmngr_report(__func__, 2640, "malloc memory faild.\n");
        return nullptr;
    }
    database->appDb = std::exchange(g_appmngr_appDb, {});
    database->appDns = std::exchange(g_appmngr_appDns, {});
    database->apps = std::exchange(g_appmngr_app, nullptr);
    appmngr_dbReInit(); // finds no array to free
    return database.release();
}

void appmngr_freeDatabase(APPMNGR_DATABASE *database) {
    if (database == nullptr) {
        return;
    }
    std::free(database->appDb.rule);
    std::free(database->appDb.appType);
    std::free(database->appDns.rule);
    std::free(database->apps);
    std::free(database);
}

const APPMNGR_APPDB *appmngr_databaseGetAppDb(const APPMNGR_DATABASE *database) {
    return &database->appDb;
}

const APPMNGR_APPDNS *appmngr_databaseGetAppDns(const APPMNGR_DATABASE *database) {
    return &database->appDns;
}

const APPMNGR_APP *appmngr_databaseGetApps(const APPMNGR_DATABASE *database, uint32_t *count) {
    *count = database->appDb.appCount;
    return *count != 0 ? database->apps : nullptr;
}

const APPMNGR_APP *appmngr_databaseGetAppById(const APPMNGR_DATABASE *database, int32_t id) {
    return findById(std::span(database->apps, database->appDb.appCount), id);
}

const APPMNGR_APPTYPE *appmngr_databaseGetAppTypeById(const APPMNGR_DATABASE *database,
                                                      int32_t id) {
    return findById(std::span(database->appDb.appType, database->appDb.appTypeCount), id);
}
