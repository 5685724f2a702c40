#include "common/common.h"

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
