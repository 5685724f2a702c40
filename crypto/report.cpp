#include "crypto/report.h"

#include "crypto/quelm.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

// Who takes reports; at most one of the two.
QUELM_REPORT chosenReport = nullptr;
QUELM_REPORT_CALLBACK chosenCallback = nullptr;
void *chosenContext = nullptr;

void choose(QUELM_REPORT report, QUELM_REPORT_CALLBACK callback, void *context) {
    chosenReport = report;
    chosenCallback = callback;
    chosenContext = context;
}

} // namespace

void quelm_setReport(QUELM_REPORT report, void *context) {
    choose(report, nullptr, context);
}

void quelm_setReportRecord(QUELM_REPORT_CALLBACK report, void *context) {
    choose(nullptr, report, context);
}

void velda::quelm::report(const char *function, const char *text) {
    const int reason = errno;
    if (chosenReport == nullptr && chosenCallback == nullptr) {
        std::perror(text);
        return;
    }
    char message[128];
    char line[sizeof message + 1];
    std::snprintf(message, sizeof message, "%s: %s", text, std::strerror(reason));
    std::snprintf(line, sizeof line, "%s\n", message);
    if (chosenReport != nullptr) {
        chosenReport(line, chosenContext);
        return;
    }
    const QUELM_REPORT_RECORD record = {function, reason, message, line};
    chosenCallback(&record, chosenContext);
}
