#include "xmlp/base/report.h"

#include "xmlp/xmlp.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

XMLP_REPORT_FUNCTION chosenReport = nullptr;
void *chosenContext = nullptr;

constexpr char begin[] = "[ERROR][%s():%d]: ";
constexpr char end[] = "\r\n";

} // namespace

void xmlp_setReport(XMLP_REPORT_FUNCTION report, void *context) {
    chosenReport = report;
    chosenContext = context;
}

namespace velda::xmlp {

void report(const char *function, int line, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    if (chosenReport == nullptr) {
        std::printf(begin, function, line);
        std::vprintf(format, arguments);
        std::fputs(end, stdout);
    } else {
        char text[1024];
        constexpr size_t room = sizeof text - sizeof end + 1; // for what stands before the line end
        size_t length = static_cast<size_t>(std::snprintf(text, room, begin, function, line));
        length = std::min(length, room - 1);
        std::vsnprintf(text + length, room - length, format, arguments);
        std::memcpy(text + std::strlen(text), end, sizeof end);
        chosenReport(text, chosenContext);
    }
    va_end(arguments);
}

} // namespace velda::xmlp
