#include "common/ascii.h"
#include "common/common.h"

#include <climits>
#include <cstring>

namespace {

int foldedByte(char c) {
    return static_cast<unsigned char>(velda::toLowerAscii(c));
}

} // namespace

int appmngr_string_caseCmp(const char *a, const char *b) {
    while (*a != '\0' && foldedByte(*a) == foldedByte(*b)) {
        ++a;
        ++b;
    }
    return foldedByte(*a) - foldedByte(*b);
}

int appmngr_string_safeCaseCmp(const char *a, const char *b) {
    if (a == nullptr || b == nullptr) {
        return INT_MAX;
    }
    return appmngr_string_caseCmp(a, b);
}

int appmngr_string_match(const char *a, const char *b) {
    if (a == nullptr || b == nullptr) {
        appmngr_report(__func__, 470, "Some parameter is null.\r\n");
        return 0;
    }
    return std::strcmp(a, b) == 0 ? 1 : 0;
}

int appmngr_string_makeSubStrByChar(char *str, char ch, int maxNum, char **out) {
    if (str == nullptr || out == nullptr) {
        appmngr_report(__func__, 428, "Some parameter is null.\r\n");
        return -1;
    }
    if (maxNum <= 0) {
        appmngr_report(__func__, 434, "Maximum number is invalid. maxNum = %d\r\n", maxNum);
        return -1;
    }
    const char separators[] = {ch, '\t', '\r', '\n', '\0'};
    char *rest = nullptr;
    int count = 0;
    for (char *token = strtok_r(str, separators, &rest); token != nullptr;
         token = strtok_r(nullptr, separators, &rest)) {
        out[count++] = token;
        if (count == maxNum) {
            appmngr_report(__func__, 453, "Too many substrings to string provided \r\n");
            return -1;
        }
    }
    out[count] = nullptr;
    return count;
}

int appmngr_string_escape(char *dst, const char *src) {
    if (dst == nullptr || src == nullptr) {
        return -1;
    }
    for (; *src != '\0'; ++src, ++dst) {
        switch (*src) {
        case ' ':
            *dst = 0x01;
            break;
        case '"':
            *dst = 0x02;
            break;
        case '\\':
            *dst = 0x03;
            break;
        default:
            *dst = *src;
        }
    }
    *dst = '\0';
    return 0;
}
