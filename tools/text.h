// Texts of the database, which are meant to be UTF-8 and may hold any byte.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

// The parts in one. (Of a literal + a string that is about to go, g++ 12 at -O3 says it overlaps.)
std::string joined(std::initializer_list<std::string_view> parts);

struct Character {
    char32_t code;
    size_t length; // in bytes; 1 for a byte that begins no character
    bool isValid;
};

// The first character of a text that is not empty.
Character firstCharacter(std::string_view text);

bool isUtf8(std::string_view text);

// The text as a terminal may show it: control characters, and bytes that are not UTF-8, as "\n" or
// "\x1b".
std::string escapeForTerminal(std::string_view text);

// How many columns a text takes, a code point being one.
size_t columnsOf(std::string_view text);
