// The table of distinct names of a static tree, and how to search it.
//
// Entries stand back to back on word boundaries (a word is four bytes): the string, then NUL bytes
// up to the end of its last word; a string whose length is a multiple of four is followed by one
// more word, 00 FF FF 00, so that its terminator begins a word that is not all zero. The first
// all-zero word ends the table. A string may be found at any word boundary, so it shares the tail
// of a longer entry that came before it.
#pragma once

#include "xmlp/base/memory.h"

#include <cstdint>
#include <string_view>

namespace velda::xmlp {

constexpr size_t wordSize = 4;

// What a table is begun with. It grows; a larger beginning would only have to be zeroed.
constexpr size_t initialStringTableSize = 4096;

// Bytes of the entry that stores a string of this length.
constexpr size_t entrySize(size_t length) {
    return (length / wordSize + 1) * wordSize;
}

// Writes a string's entry to a place that is all zero.
void writeEntry(char *place, std::string_view string);

// A name table that grows, with an index that finds any string in time linear in its length: what a
// search from the table's start would find, without searching.
//
// The index knows every word position by two things: the four bytes there, and the position of the
// string that follows them (the empty string after the last ones). Looking a string up means going
// through its words from the last to the first; two equal tails always meet in one position, the
// earliest, so no bytes are ever compared.
class StringTable {
public:
    // Obtains the first `bytes` of the table. False when they cannot be had.
    bool reserve(size_t bytes);

    // Stores a string unless it is there, and gives its offset. False when memory runs out.
    bool intern(std::string_view string, size_t &offset);
    bool intern(std::string_view string) {
        size_t ignored = 0;
        return intern(string, ignored);
    }

    // The offset of a string that is in the table.
    size_t find(std::string_view string) const;

    // The same for an attribute's name; `isRepeated` tells whether this tag has asked for it
    // before. Tags are numbered from 1 and must be read in order.
    size_t findInTag(std::string_view name, uint32_t tagNumber, bool &isRepeated);

    const char *bytes() const { return table_.get(); }
    size_t usedBytes() const { return usedWords_ * wordSize; }

    // Gives up the table's bytes and keeps the index.
    void dropBytes() { table_.reset(); }

private:
    struct Slot {
        uint32_t word;     // the four bytes at the position
        uint32_t rest;     // the position of what follows them, plus 1; 0 for nothing
        uint32_t position; // in words, plus 1; 0 in a free slot
        uint32_t tag;      // the last tag that bore this string as an attribute's name

        size_t offset() const { return size_t{position - 1U} * wordSize; }
    };

    Slot *lookUp(uint32_t word, uint32_t rest) const;
    Slot *findSlot(std::string_view string) const;
    bool append(std::string_view string, size_t place, Slot *slot, uint32_t rest, size_t &offset);
    bool growTable(size_t bytes);
    bool growIndex(size_t moreEntries);

    Owned<char> table_;
    size_t tableBytes_ = 0;
    size_t usedWords_ = 0;
    Owned<Slot> slots_;
    size_t slotCount_ = 0; // a power of two, or 0
    size_t usedSlots_ = 0;
    uint64_t seed_ = 0;
};

} // namespace velda::xmlp
