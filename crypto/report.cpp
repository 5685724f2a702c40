#include "crypto/report.h"

#include "crypto/quelm.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

QUELM_REPORT chosenReport = nullptr;
void *chosenContext = nullptr;

} // namespace

void quelm_setReport(QUELM_REPORT report, void *context) {
    chosenReport = report;
    chosenContext = context;
}

void velda::quelm::report(const char *text) {
    if (chosenReport == nullptr) {
        std::perror(text);
        return;
    }
    char line[128];
    std::snprintf(line, sizeof line, "%s: %s\n", text, std::strerror(errno));
    chosenReport(line, chosenContext);
}
