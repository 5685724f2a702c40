#include "common/common.h"

#include <cstdarg>
#include <cstdio>

const char *appmngr_errStr(int16_t code) {
    switch (code) {
#define RESULT_CODE_NAME(name, value) \
    case name:                        \
        return #name;
        APPMNGR_RESULT_CODES(RESULT_CODE_NAME)
#undef RESULT_CODE_NAME
    default:
        return "ERROR NOT IN LIST";
    }
}

void appmngr_report(const char *function, int number, const char *format, ...) {
    std::printf("[Error](%s) %d: ", function, number);
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
}
