#include "xmlp/report.h"

#include <cstdarg>
#include <cstdio>

namespace velda::xmlp {

void report(const char *function, int line, const char *format, ...) {
    std::printf("[ERROR][%s():%d]: ", function, line);
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::fputs("\r\n", stdout);
}

} // namespace velda::xmlp
