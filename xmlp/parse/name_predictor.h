// The short names that a text has shown so far, to be recognised where they come again.
//
// They repeat in the order they came in before. So each name remembers which ones followed it, and
// one 16-byte compare, which includes the byte after the name, usually identifies the name, its length
// and its offset in the string table.
#pragma once

#include "xmlp/base/string_table.h"
#include "xmlp/parse/open_elements.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

namespace velda::xmlp {

// Sixteen bytes of a text.
struct Block16 {
    uint64_t low;
    uint64_t high;
};

inline Block16 load16(const char *text) {
    Block16 words = {};
    std::memcpy(&words, text, sizeof(Block16));
    return words;
}

// By number of bytes, the mask of that many at the start of two words.
constexpr std::array<Block16, sizeof(Block16) + 1> makeMasks() {
    std::array<Block16, sizeof(Block16) + 1> made = {};
    for (size_t count = 0; count <= sizeof(Block16); ++count) {
        std::array<uint8_t, sizeof(Block16)> bytes = {};
        std::fill_n(bytes.begin(), count, uint8_t{0xFF});
        made[count] = std::bit_cast<Block16>(bytes);
    }
    return made;
}

inline constexpr std::array<Block16, sizeof(Block16) + 1> masks = makeMasks();

struct PredictedName {
    Block16 words; // the name and the byte after it
    Block16 mask;  // what these add of sixteen bytes
    uint32_t length;
    uint32_t offset; // in the name table
    uint32_t kind;   // as a child, when a '>' follows the name; else noChildren
    bool isItem;
    char terminator;          // the byte after the name
    PredictedName *successor; // the name that followed it the last time
    PredictedName *alternate; // and another that did so before

    bool matches(const Block16 &text) const {
        return (((text.low & mask.low) ^ words.low) | ((text.high & mask.high) ^ words.high)) == 0;
    }
};

class NamePredictor {
public:
    // Longer names are not kept here.
    static constexpr size_t maximumLength = sizeof(Block16) - 1;

    explicit NamePredictor(StringTable &names) : names_(names) {
        none_.words.low = 1; // outside its mask: stands nowhere
        none_.successor = &none_;
        none_.alternate = &none_;
    }
    NamePredictor(const NamePredictor &) = delete;
    NamePredictor &operator=(const NamePredictor &) = delete;

    // A name that has followed the last one before, if it's what the text goes on with, else null.
    const PredictedName *predictNext(const Block16 &text) {
        if (!last_->successor->matches(text)) [[unlikely]] {
            if (!last_->alternate->matches(text)) {
                return nullptr;
            }
            std::swap(last_->successor, last_->alternate);
        }
        last_ = last_->successor;
        return last_;
    }

    // A name of at most that length, which is interned unless it is known. There are sixteen bytes to
    // read, and neither the name nor the byte after it is NUL. Null when memory runs out.
    const PredictedName *add(const char *name, size_t length);

    // True once memory has run out.
    bool isOutOfMemory() const { return isOutOfMemory_; }

private:
    static constexpr unsigned placeBits = 7;

    StringTable &names_;
    PredictedName none_ = {}; // what follows a name that nothing has followed yet
    PredictedName *last_ = &none_;
    bool isOutOfMemory_ = false;
    std::array<PredictedName, size_t{1} << placeBits> places_ = {};
};

} // namespace velda::xmlp
