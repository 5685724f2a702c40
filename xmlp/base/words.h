// Short texts, taken by words. Two words that overlap, the first and the last of a text, have all
// of its bytes when it is up to twice as long: no loop, no call, and no byte beside the text.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace velda::xmlp {

template <class Word>
Word firstWord(std::string_view text) {
    Word word;
    std::memcpy(&word, text.data(), sizeof word);
    return word;
}

template <class Word>
Word lastWord(std::string_view text) {
    Word word;
    std::memcpy(&word, text.data() + text.size() - sizeof word, sizeof word);
    return word;
}

// The bytes of a text of less than eight, in some order, some of them twice, and zeros.
inline uint64_t bytesOfShort(std::string_view text) {
    if (text.size() >= 4) {
        return uint64_t{firstWord<uint32_t>(text)} << 32 | lastWord<uint32_t>(text);
    }
    if (text.size() >= 2) {
        return uint64_t{firstWord<uint16_t>(text)} << 16 | lastWord<uint16_t>(text);
    }
    return text.empty() ? 0 : static_cast<unsigned char>(text[0]);
}

template <class Word>
void copyEnds(char *place, std::string_view text) {
    const auto first = firstWord<Word>(text);
    const auto last = lastWord<Word>(text);
    std::memcpy(place, &first, sizeof first);
    std::memcpy(place + text.size() - sizeof last, &last, sizeof last);
}

inline void copyText(char *place, std::string_view text) {
    if (text.size() > 16) {
        std::memcpy(place, text.data(), text.size());
    } else if (text.size() >= 8) {
        copyEnds<uint64_t>(place, text);
    } else if (text.size() >= 4) {
        copyEnds<uint32_t>(place, text);
    } else if (text.size() >= 2) {
        copyEnds<uint16_t>(place, text);
    } else if (text.size() == 1) {
        *place = text[0];
    }
}

} // namespace velda::xmlp
