// Byte classes and character steps. Classes are tests on single bytes: a byte of 0x80 or above is
// an ordinary byte of every class.
#pragma once

#include "xmlp/xmlp_internal.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace velda::xmlp {

enum ByteClass : uint8_t {
    whiteSpaceByte = 1,
    nameByte = 2,
    attrValueByte = 4,
    plainByte = 8 // what xmlp_isValidChar admits
};

extern const std::array<uint8_t, 256> byteClasses;

inline bool isOf(char c, ByteClass byteClass) {
    return (byteClasses[static_cast<unsigned char>(c)] & byteClass) != 0;
}

inline bool isWhiteSpace(char c) {
    return isOf(c, whiteSpaceByte);
}

inline bool isNameChar(char c) {
    return isOf(c, nameByte);
}

inline bool isAttrValueChar(char c) {
    return isOf(c, attrValueByte);
}

inline const char *skipWhiteSpace(const char *position) {
    while (isWhiteSpace(*position)) {
        ++position;
    }
    return position;
}

// The first byte that is not white space, or the end.
inline const char *skipWhiteSpaceUpTo(const char *position, const char *end) {
    while (position < end && isWhiteSpace(*position)) {
        ++position;
    }
    return position;
}

// string_view's own starts_with may throw, and so calls into the C++ run-time library.
inline bool startsWith(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() &&
           std::memcmp(text.data(), prefix.data(), prefix.size()) == 0;
}

// How far a scanner steps from a byte that it does not act on.
inline uint32_t characterLength(char lead) {
    return _utf8CharLen[static_cast<unsigned char>(lead)];
}

} // namespace velda::xmlp
