// The three entity references, and escaping, which is here to be inlined into the writing of trees.
#pragma once

#include "xmlp/base/words.h"

#include <cstdint>
#include <string_view>

namespace velda::xmlp {

struct Entity {
    char byte;
    std::string_view reference;
};

inline constexpr Entity entities[] = {{'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}};

// What a byte is escaped to; empty for one that stands for itself.
inline std::string_view referenceFor(char byte) {
    for (const Entity &entity : entities) {
        if (entity.byte == byte) {
            return entity.reference;
        }
    }
    return {};
}

// Is any of eight bytes escaped?
inline bool isAnyEscaped(uint64_t bytes) {
    constexpr uint64_t each = 0x0101010101010101U;
    const auto hasZero = [](uint64_t word) { return (word - each) & ~word & each << 7; };
    static_assert(('<' | 2) == '>' && ('>' | 2) == '>');
    return (hasZero((bytes | each * 2) ^ each * '>') | hasZero(bytes ^ each * '&')) != 0;
}

// The first '&' that begins none of the three references. There is one.
const char *findBadReference(std::string_view text);

// How many bytes at the beginning of a text stand for themselves.
inline size_t plainLength(std::string_view text) {
    const size_t size = text.size();
    size_t length = 0;
    if (size < 8) {
        if (!isAnyEscaped(bytesOfShort(text))) {
            return size;
        }
    } else {
        while (size - length > 8 && !isAnyEscaped(firstWord<uint64_t>({text.data() + length, 8}))) {
            length += 8;
        }
        // The last word may begin in bytes that have been looked at.
        if (size - length <= 8 && !isAnyEscaped(lastWord<uint64_t>(text))) {
            return size;
        }
    }
    while (length < size && referenceFor(text[length]).empty()) {
        ++length;
    }
    return length;
}

// Hands the escaped text to `sink` in parts. Measuring and writing are this one walk, so that they
// cannot disagree.
template <class Sink>
void escape(std::string_view text, Sink sink) {
    while (true) {
        const size_t plain = plainLength(text);
        sink({text.data(), plain});
        if (plain == text.size()) {
            return;
        }
        sink(referenceFor(text[plain]));
        text.remove_prefix(plain + 1);
    }
}

} // namespace velda::xmlp
