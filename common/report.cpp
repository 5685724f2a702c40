// The one place where the common utilities and the database module report.

#include "common/common.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr size_t textSize = 1024;
constexpr size_t prefixSize = textSize / 4;

// Who takes reports; at most one of the two.
APPMNGR_REPORT chosenReport = nullptr;
APPMNGR_REPORT_CALLBACK chosenCallback = nullptr;
void *chosenContext = nullptr;

void choose(APPMNGR_REPORT report, APPMNGR_REPORT_CALLBACK callback, void *context) {
    chosenReport = report;
    chosenCallback = callback;
    chosenContext = context;
}

bool isPrinted() {
    return chosenReport == nullptr && chosenCallback == nullptr;
}

void callBack(const char *function, int number, const char *text, size_t prefixLength) {
    char message[textSize];
    size_t length = std::strlen(text + prefixLength);
    std::memcpy(message, text + prefixLength, length);
    while (length > 0 && (message[length - 1] == '\n' || message[length - 1] == '\r')) {
        --length;
    }
    message[length] = '\0';
    const APPMNGR_REPORT_RECORD record = {function, number, message, text};
    chosenCallback(&record, chosenContext);
}

// `prefix`, then the formatted message.
__attribute__((format(printf, 4, 0))) void
tell(const char *function, int number, const char *prefix, const char *format, va_list arguments) {
    if (isPrinted()) {
        std::fputs(prefix, stdout);
        std::vprintf(format, arguments);
        return;
    }
    char text[textSize];
    const size_t prefixLength = std::strlen(prefix);
    std::memcpy(text, prefix, prefixLength + 1);
    std::vsnprintf(text + prefixLength, sizeof text - prefixLength, format, arguments);
    if (chosenReport != nullptr) {
        chosenReport(text, chosenContext);
    } else {
        callBack(function, number, text, prefixLength);
    }
}

} // namespace

void appmngr_setReport(APPMNGR_REPORT report, void *context) {
    choose(report, nullptr, context);
}

void appmngr_setReportRecord(APPMNGR_REPORT_CALLBACK report, void *context) {
    choose(nullptr, report, context);
}

void appmngr_report(const char *function, int number, const char *format, ...) {
    char prefix[prefixSize];
    std::snprintf(prefix, sizeof prefix, "[Error](%s) %d: ", function, number);
    va_list arguments;
    va_start(arguments, format);
    tell(function, number, prefix, format, arguments);
    va_end(arguments);
}

void appmngr_notice(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    tell(nullptr, 0, "", format, arguments);
    va_end(arguments);
}

void appmngr_systemError(const char *text) {
    if (isPrinted()) {
        std::perror(text);
    } else {
        appmngr_notice("%s: %s\n", text, std::strerror(errno));
    }
}
