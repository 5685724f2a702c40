// Finding records by identifier.

#include "appmngr/appmngr_internal.h"

#include <algorithm>

namespace {

template <class Record>
Record *findById(Record *records, uint32_t count, int32_t id) {
    Record *end = records + count;
    Record *found =
        std::find_if(records, end, [id](const Record &record) { return record.id == id; });
    return found == end ? nullptr : found;
}

} // namespace

APPMNGR_APPTYPE *_appmngr_getAppTypeBydId(int32_t id) {
    return findById(g_appmngr_appDb.appType, g_appmngr_appDb.appTypeCount, id);
}

APPMNGR_APP *_appmngr_getAppById(int32_t id) {
    return findById(g_appmngr_app, g_appmngr_counter.appCnt, id);
}
