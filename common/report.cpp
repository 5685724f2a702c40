// The one place where the common utilities and the database module report.

#include "common/common.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr size_t textSize = 1024;

APPMNGR_REPORT chosenReport = nullptr;
void *chosenContext = nullptr;

// `begin`, then the formatted message.
__attribute__((format(printf, 2, 0))) void tell(const char *begin, const char *format,
                                                va_list arguments) {
    if (chosenReport == nullptr) {
        std::fputs(begin, stdout);
        std::vprintf(format, arguments);
        return;
    }
    char text[textSize];
    const int length = std::snprintf(text, sizeof text, "%s", begin);
    if (length >= 0 && static_cast<size_t>(length) < sizeof text) {
        std::vsnprintf(text + length, sizeof text - static_cast<size_t>(length), format, arguments);
    }
    chosenReport(text, chosenContext);
}

} // namespace

void appmngr_setReport(APPMNGR_REPORT report, void *context) {
    chosenReport = report;
    chosenContext = context;
}

void appmngr_report(const char *function, int number, const char *format, ...) {
    char begin[textSize / 4];
    std::snprintf(begin, sizeof begin, "[Error](%s) %d: ", function, number);
    va_list arguments;
    va_start(arguments, format);
    tell(begin, format, arguments);
    va_end(arguments);
}

void appmngr_notice(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    tell("", format, arguments);
    va_end(arguments);
}

void appmngr_systemError(const char *text) {
    if (chosenReport == nullptr) {
        std::perror(text);
    } else {
        appmngr_notice("%s: %s\n", text, std::strerror(errno));
    }
}
