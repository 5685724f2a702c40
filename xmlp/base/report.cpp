#include "xmlp/base/report.h"

#include "xmlp/xmlp.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

// At most one of them is set.
XMLP_REPORT_FUNCTION chosenReport = nullptr;
XMLP_REPORT_CALLBACK chosenCallback = nullptr;
void *chosenContext = nullptr;

constexpr char prefix[] = "[ERROR][%s():%d]: ";
constexpr char lineEnd[] = "\r\n";

__attribute__((format(printf, 4, 0))) void print(uint32_t offset, const char *function, int line,
                                                 const char *format, va_list arguments) {
    if (chosenReport == nullptr && chosenCallback == nullptr) {
        std::printf(prefix, function, line);
        std::vprintf(format, arguments);
        std::fputs(lineEnd, stdout);
        return;
    }
    char text[1024];
    constexpr size_t capacity = sizeof text - sizeof lineEnd + 1; // for all but the line end
    size_t start = static_cast<size_t>(std::snprintf(text, capacity, prefix, function, line));
    start = std::min(start, capacity - 1);
    std::vsnprintf(text + start, capacity - start, format, arguments);
    char message[sizeof text];
    std::memcpy(message, text + start, std::strlen(text + start) + 1);
    std::memcpy(text + std::strlen(text), lineEnd, sizeof lineEnd);
    if (chosenReport != nullptr) {
        chosenReport(text, chosenContext);
    } else {
        const XMLP_REPORT_RECORD record = {function, line, message, text, offset};
        chosenCallback(&record, chosenContext);
    }
}

} // namespace

void xmlp_setReport(XMLP_REPORT_FUNCTION report, void *context) {
    chosenReport = report;
    chosenCallback = nullptr;
    chosenContext = context;
}

void xmlp_setReportRecord(XMLP_REPORT_CALLBACK report, void *context) {
    chosenReport = nullptr;
    chosenCallback = report;
    chosenContext = context;
}

namespace velda::xmlp {

void report(const char *function, int line, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    print(XMLP_NO_OFFSET, function, line, format, arguments);
    va_end(arguments);
}

void reportAt(uint32_t offset, const char *function, int line, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    print(offset, function, line, format, arguments);
    va_end(arguments);
}

} // namespace velda::xmlp
