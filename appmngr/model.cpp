// The model: allocation at counted sizes, release and reset.

#include "appmngr/appmngr_internal.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// A number and a date and time that tell one state of the database from another. Nothing sets it.
struct Stamp {
    int32_t number, year, month, day, hour, minute, second;
};

constinit Stamp stamp = {};

template <class Record>
bool obtain(Record *&array, uint32_t count) {
    array = static_cast<Record *>(std::calloc(count, sizeof(Record)));
    return array != nullptr;
}

template <class Record>
void release(Record *&array) {
    std::free(array);
    array = nullptr;
}

bool obtainAppDb(const APPMNGR_COUNTER &counted) {
    if (counted.tupleCnt == 0 || counted.appTypeCnt == 0 || counted.appCnt == 0) {
        return false;
    }
    if (!obtain(g_appmngr_appDb.rule, counted.tupleCnt) ||
        !obtain(g_appmngr_appDb.appType, counted.appTypeCnt) ||
        !obtain(g_appmngr_app, counted.appCnt)) {
        return false;
    }
    if (counted.dnsKwCnt != 0 && !obtain(g_appmngr_appDns.rule, counted.dnsKwCnt)) {
        appmngr_notice("Allocate for g_appmngr_appDns.rule FAILED\n");
        return false;
    }
    return true;
}

} // namespace

int _appmngr_alloc_for_appdb(void) {
    if (g_appmngr_appDb.rule != nullptr || g_appmngr_appDb.appType != nullptr ||
        g_appmngr_app != nullptr || g_appmngr_appDns.rule != nullptr) {
        _appmngr_free_for_appdb();
    }
    g_appmngr_appDb.ruleCount = g_appmngr_counter.tupleCnt;
    g_appmngr_appDb.appTypeCount = g_appmngr_counter.appTypeCnt;
    g_appmngr_appDns.count = g_appmngr_counter.dnsKwCnt;
    if (!obtainAppDb(g_appmngr_counter)) {
        _appmngr_free_for_appdb();
        return -1;
    }
    return 0;
}

void _appmngr_free_for_appdb(void) {
    release(g_appmngr_appDb.rule);
    release(g_appmngr_appDb.appType);
    release(g_appmngr_app);
    if (g_appmngr_appDns.rule != nullptr) {
        release(g_appmngr_appDns.rule);
        appmngr_notice("**********************************\n"
                       "Free g_appmngr_appDns.rule\n"
                       "**********************************\n");
    }
    g_appmngr_appDb = {};
    g_appmngr_appDns = {};
}

int _appmngr_alloc_for_appdesc(void) {
    _appmngr_free_for_appdesc();
    const uint32_t appCount = g_appmngr_counter.descAppCnt;
    const uint32_t appTypeCount = g_appmngr_counter.descAppTypeCnt;
    if (appCount == 0 || appTypeCount == 0) {
        return -1;
    }
    if (!obtain(g_appmngr_appDesc.app, appCount) ||
        !obtain(g_appmngr_appDesc.appType, appTypeCount)) {
        _appmngr_free_for_appdesc();
        return -1;
    }
    g_appmngr_appDesc.appCount = appCount;
    g_appmngr_appDesc.appTypeCount = appTypeCount;
    return 0;
}

void _appmngr_free_for_appdesc(void) {
    release(g_appmngr_appDesc.app);
    release(g_appmngr_appDesc.appType);
    g_appmngr_appDesc = {};
}

int appmngr_dbReInit(void) {
    _appmngr_free_for_appdb();
    _appmngr_free_for_appdesc();
    std::memset(g_appmngr_appTypeId, 0, sizeof g_appmngr_appTypeId);
    g_appmngr_counter = {};
    return 0;
}

int appmngr_getStampStr(char *dst) {
    if (dst == nullptr) {
        return -1;
    }
    std::snprintf(dst, APPMNGR_STAMP_SIZE, "%d#%04d-%02d-%02d %02d:%02d:%02d", stamp.number,
                  stamp.year, stamp.month, stamp.day, stamp.hour, stamp.minute, stamp.second);
    return 0;
}
