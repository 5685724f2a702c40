// Bytes as hexadecimal digits.
#pragma once

#include <string>

inline std::string fromHex(const std::string &digits) {
    std::string bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

inline std::string toHex(const std::string &bytes) {
    std::string digits;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        digits += "0123456789ABCDEF"[value >> 4];
        digits += "0123456789ABCDEF"[value & 15];
    }
    return digits;
}
