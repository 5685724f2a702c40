// The application records, as far as there are any: the counters outlive the array.
#pragma once

#include "appmngr/appmngr_internal.h"

#include <span>

namespace velda::appmngr {

inline std::span<APPMNGR_APP> applications(uint32_t count) {
    return {g_appmngr_app, g_appmngr_app != nullptr ? count : 0};
}

inline std::span<APPMNGR_APP> countedApplications() {
    return applications(g_appmngr_counter.appCnt);
}

inline std::span<APPMNGR_APP> filledApplications() {
    return applications(g_appmngr_counter.appIdx);
}

} // namespace velda::appmngr
