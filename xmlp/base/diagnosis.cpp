#include "xmlp/base/diagnosis.h"

#include <algorithm>

namespace velda::xmlp {

const char *messageOf(XMLP_ERROR_CODE code) {
    switch (code) {
#define XMLP_ERROR_MESSAGE(name, value, message) \
    case name:                                   \
        return message;
        XMLP_ERROR_CODES(XMLP_ERROR_MESSAGE)
#undef XMLP_ERROR_MESSAGE
    case XMLP_ERROR_NONE:
        break;
    }
    return "";
}

void Diagnosis::refuse(XMLP_ERROR_CODE code, const char *place, const char *function, int line) {
    if (code_ == XMLP_ERROR_NONE) {
        code_ = code;
        place_ = place;
    }
    const uint32_t offset = hasPlace() ? static_cast<uint32_t>(place_ - text_) : XMLP_NO_OFFSET;
    reportAt(offset, function, line, "%s", messageOf(code));
}

XMLP_ERROR Diagnosis::error() const {
    XMLP_ERROR error = {code_, 0, 0, 0, messageOf(code_)};
    if (hasPlace()) {
        const std::string_view before(text_, static_cast<size_t>(place_ - text_));
        const size_t lineEnd = before.rfind('\n');
        const size_t lineStart = lineEnd == std::string_view::npos ? 0 : lineEnd + 1;
        error.offset = static_cast<uint32_t>(before.size());
        error.line = static_cast<uint32_t>(std::count(before.begin(), before.end(), '\n') + 1);
        error.column = static_cast<uint32_t>(before.size() - lineStart + 1);
    }
    return error;
}

} // namespace velda::xmlp

const char *xmlp_errorName(int code) {
    switch (code) {
#define XMLP_ERROR_NAME(name, value, message) \
    case name:                                \
        return #name;
        XMLP_ERROR_CODES(XMLP_ERROR_NAME)
#undef XMLP_ERROR_NAME
    default:
        return code == XMLP_ERROR_NONE ? "XMLP_ERROR_NONE" : "ERROR NOT IN LIST";
    }
}
