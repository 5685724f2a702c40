#include "xmlp/known_strings.h"

#include <string_view>

namespace velda::xmlp {
KnownString *KnownStrings::findPlace(const char *string, size_t length) {
    constexpr uint64_t multiplier = 0x9E3779B97F4A7C15;
    const Words text = wordsAt(string);
    const Words &mask = masks[length + 1];
    const Words words = {text.low & mask.low, text.high & mask.high};
    const uint64_t hash = (words.low ^ words.high * 31) * multiplier;
    KnownString &known = places_[hash >> (64 - placeBits)];
    if (known.words.low != words.low || known.words.high != words.high) {
        const std::string_view view(string, length);
        size_t offset = 0;
        if (!names_.intern(view, offset)) {
            isOutOfMemory_ = true;
            return nullptr;
        }
        const bool isItem = view == itemName;
        const Children kind = isItem ? itemChildren : namedChildren;
        known = {words,
                 mask,
                 static_cast<uint32_t>(length),
                 static_cast<uint32_t>(offset),
                 string[length] == '>' ? kind : noChildren,
                 isItem,
                 view.find('/') != std::string_view::npos,
                 string[length],
                 &none_,
                 &none_};
    }
    return &known;
}

const KnownString *KnownStrings::takeName(const char *name, size_t length) {
    KnownString *known = findPlace(name, length);
    if (known != nullptr) {
        lastName_->second = std::exchange(lastName_->next, known);
        lastName_ = known;
    }
    return known;
}

} // namespace velda::xmlp
