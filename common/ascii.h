// Letters of ASCII, whatever the locale.
#pragma once

namespace velda {

constexpr char toLowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace velda
