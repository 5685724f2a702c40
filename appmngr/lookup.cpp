// Handing out the model, and finding records in it by identifier.

#include "appmngr/records.h"

using velda::appmngr::findById;

APPMNGR_APPTYPE *_appmngr_getAppTypeBydId(int32_t id) {
    return findById(std::span(g_appmngr_appDb.appType, g_appmngr_appDb.appTypeCount), id);
}

APPMNGR_APP *_appmngr_getAppById(int32_t id) {
    return findById(velda::appmngr::countedApplications(), id);
}

const APPMNGR_APPDB *appmngr_getAppDb(void) {
    return &g_appmngr_appDb;
}

const APPMNGR_APPDNS *appmngr_getAppDns(void) {
    return &g_appmngr_appDns;
}

const APPMNGR_APP *appmngr_getApps(uint32_t *count) {
    const auto apps = velda::appmngr::populatedApplications();
    *count = static_cast<uint32_t>(apps.size());
    return apps.data();
}
