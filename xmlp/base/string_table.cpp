#include "xmlp/base/string_table.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace velda::xmlp {
namespace {

constexpr unsigned char markerBytes[wordSize] = {0x00, 0xFF, 0xFF, 0x00};

uint32_t marker() {
    uint32_t word = 0;
    std::memcpy(&word, markerBytes, wordSize);
    return word;
}

// The words of an entry, the padded or marker word included, by their place in it. They serve to tell
// entries apart: the padded word need not be what lies in memory.
uint32_t entryWord(std::string_view string, size_t place) {
    const char *bytes = string.data() + place * wordSize;
    uint32_t word = 0;
    switch (string.size() - place * wordSize) {
    case 0:
        return marker();
    case 3:
        word = static_cast<unsigned char>(bytes[2]);
        [[fallthrough]];
    case 2:
        word = word << 8 | static_cast<unsigned char>(bytes[1]);
        [[fallthrough]];
    case 1:
        return word << 8 | static_cast<unsigned char>(bytes[0]);
    default:
        std::memcpy(&word, bytes, wordSize);
        return word;
    }
}

} // namespace

void writeEntry(char *place, std::string_view string) {
    if (!string.empty()) {
        std::memcpy(place, string.data(), string.size());
    }
    if (string.size() % wordSize == 0) {
        std::memcpy(place + string.size(), markerBytes, wordSize);
    }
}

bool StringTable::reserve(size_t bytes) {
    // Where the table lies is not for the author of a text to know, so keys that collide cannot be
    // chosen beforehand.
    table_.reset(static_cast<char *>(std::calloc(bytes, 1)));
    seed_ = reinterpret_cast<uintptr_t>(table_.get());
    tableBytes_ = table_ != nullptr ? bytes : 0;
    return table_ != nullptr;
}

bool StringTable::growTable(size_t bytes) {
    const auto doubled = CheckedSize(bytes).add(tableBytes_).bytes();
    char *larger = doubled ? static_cast<char *>(std::realloc(table_.get(), *doubled)) : nullptr;
    if (larger == nullptr) {
        return false;
    }
    std::memset(larger + tableBytes_, 0, *doubled - tableBytes_);
    static_cast<void>(table_.release());
    table_.reset(larger);
    tableBytes_ = *doubled;
    return true;
}

StringTable::Slot *StringTable::lookUp(uint32_t word, uint32_t rest) const {
    constexpr uint64_t multiplier = 0x9E3779B97F4A7C15;
    uint64_t hash = (uint64_t{rest} << 32 | word) ^ seed_;
    hash *= multiplier;
    hash ^= hash >> 32;
    hash *= multiplier;
    size_t index = static_cast<size_t>(hash >> 32) & (slotCount_ - 1);
    Slot *slots = slots_.get();
    while (slots[index].position != 0 && (slots[index].word != word || slots[index].rest != rest)) {
        index = (index + 1) & (slotCount_ - 1);
    }
    return &slots[index];
}

bool StringTable::growIndex(size_t moreEntries) {
    constexpr size_t firstSlotCount = 1024;
    size_t count = std::max(slotCount_, firstSlotCount);
    // At most half the slots are ever taken.
    while (count / 2 < usedSlots_ + moreEntries) {
        const auto doubled = CheckedSize(0).add(count, 2).bytes();
        if (!doubled) {
            return false;
        }
        count = *doubled;
    }
    Owned<Slot> old(static_cast<Slot *>(std::calloc(count, sizeof(Slot))));
    if (old == nullptr) {
        return false;
    }
    old.swap(slots_);
    for (const Slot &slot : std::span(old.get(), std::exchange(slotCount_, count))) {
        if (slot.position != 0) {
            *lookUp(slot.word, slot.rest) = slot;
        }
    }
    return true;
}

bool StringTable::intern(std::string_view string, size_t &offset) {
    const size_t words = entrySize(string.size()) / wordSize;
    if (slotCount_ / 2 < usedSlots_ + words && !growIndex(words)) {
        return false;
    }
    uint32_t rest = 0;
    for (size_t place = words; place > 0; --place) {
        Slot *slot = lookUp(entryWord(string, place - 1), rest);
        if (slot->position == 0) {
            return append(string, place, slot, rest, offset);
        }
        rest = slot->position;
    }
    offset = size_t{rest - 1U} * wordSize;
    return true;
}

// A string of which all is known from this place on, and nothing before it.
bool StringTable::append(std::string_view string, size_t place, Slot *slot, uint32_t rest,
                         size_t &offset) {
    const size_t words = entrySize(string.size()) / wordSize;
    // One all-zero word must follow the entry.
    const auto needed = CheckedSize(usedBytes()).add(words + 1, wordSize).bytes();
    if (!needed || (*needed > tableBytes_ && !growTable(*needed))) {
        return false;
    }
    offset = usedBytes();
    writeEntry(table_.get() + offset, string);
    usedSlots_ += place;
    while (true) {
        const auto position = static_cast<uint32_t>(usedWords_ + place);
        *slot = {entryWord(string, place - 1), rest, position, 0};
        if (--place == 0) {
            break;
        }
        rest = position;
        slot = lookUp(entryWord(string, place - 1), rest);
    }
    usedWords_ += words;
    return true;
}

StringTable::Slot *StringTable::findSlot(std::string_view string) const {
    size_t place = entrySize(string.size()) / wordSize; // an entry has a word at least
    uint32_t rest = 0;
    while (true) {
        Slot *slot = lookUp(entryWord(string, --place), rest);
        if (place == 0) {
            return slot;
        }
        rest = slot->position;
    }
}

size_t StringTable::find(std::string_view string) const {
    return findSlot(string)->offset();
}

size_t StringTable::findInTag(std::string_view name, uint32_t tagNumber, bool &isRepeated) {
    Slot *slot = findSlot(name);
    isRepeated = slot->tag == tagNumber;
    slot->tag = tagNumber;
    return slot->offset();
}

} // namespace velda::xmlp
