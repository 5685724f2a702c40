// Records of the model.
#pragma once

#include "appmngr/appmngr_internal.h"

#include <algorithm>
#include <span>

namespace velda::appmngr {

// The application records, as far as there are any: the counters outlive the array.

inline std::span<APPMNGR_APP> applications(uint32_t count) {
    return {g_appmngr_app, g_appmngr_app != nullptr ? count : 0};
}

inline std::span<APPMNGR_APP> countedApplications() {
    return applications(g_appmngr_counter.appCnt);
}

inline std::span<APPMNGR_APP> populatedApplications() {
    return applications(g_appmngr_counter.appIdx);
}

// The first record with this identifier, or null.
template <class Record>
Record *findById(std::span<Record> records, int32_t id) {
    const auto found = std::find_if(records.begin(), records.end(),
                                    [id](const Record &record) { return record.id == id; });
    return found == records.end() ? nullptr : &*found;
}

} // namespace velda::appmngr
