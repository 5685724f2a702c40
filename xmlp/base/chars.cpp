#include "xmlp/base/chars.h"

#include "xmlp/base/report.h"

#include <algorithm>
#include <string_view>

namespace velda::xmlp {
namespace {

using std::string_view_literals::operator""sv;

constexpr std::array<uint8_t, 256> classifyBytes() {
    std::array<uint8_t, 256> classes{};
    const auto mark = [&classes](ByteClass byteClass, std::string_view forbidden) {
        for (unsigned byte = 0; byte < classes.size(); ++byte) {
            if (forbidden.find(static_cast<char>(byte)) == std::string_view::npos) {
                classes[byte] |= byteClass;
            }
        }
    };
    mark(nameByte, "\0\t\n\r \"&/<=>"sv);
    mark(attrValueByte, "\0\"&<>"sv);
    mark(plainByte, "&/<>"sv);
    for (const char c : " \t\n\r"sv) {
        classes[static_cast<unsigned char>(c)] |= whiteSpaceByte;
    }
    return classes;
}

int allOf(const char *buf, uint32_t len, ByteClass byteClass) {
    return std::all_of(buf, buf + len, [byteClass](char c) { return isOf(c, byteClass); }) ? 1 : 0;
}

} // namespace

constexpr std::array<uint8_t, 256> byteClasses = classifyBytes();

} // namespace velda::xmlp

using namespace velda::xmlp;

// clang-format off
const uint8_t _utf8CharLen[256] = {
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 00
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 10
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 20
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 30
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 40
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 50
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 60
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 70
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 80: continuation bytes, met on their own
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // 90
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // A0
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // B0
    1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, // C0: C0 and C1 begin no character
    2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, // D0
    3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, // E0
    4, 4, 4, 4, 4, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, // F0: Unicode ends with F4
};
// clang-format on

int _isWhiteSpace(char c) {
    return isWhiteSpace(c) ? 1 : 0;
}

const char *_skipWhiteSpace(const char *position) {
    if (position == nullptr) {
        XMLP_REPORT("buf is null.");
        return nullptr;
    }
    return skipWhiteSpace(position);
}

int xmlp_nameCmp(const char *name, uint32_t len, const char *stored) {
    if (name == nullptr || stored == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    for (uint32_t i = 0; i < len; ++i) {
        if (stored[i] != name[i] || stored[i] == '\0') {
            return -1;
        }
    }
    return stored[len] == '\0' ? 0 : -1;
}

int xmlp_isValidName(const char *buf, uint32_t len) {
    if (buf == nullptr) {
        XMLP_REPORT("buf is null.");
        return 0;
    }
    return allOf(buf, len, nameByte);
}

int xmlp_isValidAttrValue(const char *buf, uint32_t len) {
    if (buf == nullptr) {
        XMLP_REPORT("buf is null.");
        return 0;
    }
    return allOf(buf, len, attrValueByte);
}

int xmlp_isValidChar(const char *buf, uint32_t len) {
    if (buf == nullptr) {
        XMLP_REPORT("buf is null.");
        return 0;
    }
    return allOf(buf, len, plainByte);
}
