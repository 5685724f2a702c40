#include "tools/text.h"

#include <array>
#include <cstdio>

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

// What moves the cursor or turns the direction of writing.
bool isControl(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

std::string escaped(char32_t code) {
    switch (code) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    std::array<char, 16> form;
    std::snprintf(form.data(), form.size(), code < 0x100 ? "\\x%02x" : "\\u%04x",
                  static_cast<unsigned>(code));
    return form.data();
}

} // namespace

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

Character firstCharacter(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const Character invalid = {lead, 1, false};
    if (lead < 0x80) {
        return {lead, 1, true};
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return invalid;
    }
    const size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (text.size() < length) {
        return invalid;
    }
    char32_t code = lead & (0xFFU >> (length + 1));
    for (size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i])) {
            return invalid;
        }
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < smallest[length] || isSurrogate || code > 0x10FFFF
               ? invalid
               : Character{code, length, true};
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (!character.isValid) {
            return false;
        }
        text.remove_prefix(character.length);
    }
    return true;
}

std::string escapeForTerminal(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (!character.isValid || isControl(character.code)) {
            result += escaped(character.code);
        } else {
            result += text.substr(0, character.length);
        }
        text.remove_prefix(character.length);
    }
    return result;
}

size_t columnsOf(std::string_view text) {
    size_t columns = 0;
    for (; !text.empty(); ++columns) {
        text.remove_prefix(firstCharacter(text).length);
    }
    return columns;
}
