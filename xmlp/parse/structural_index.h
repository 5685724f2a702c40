// Stage 1 of a parse, the structural index: where every '<' of a chunk of text is, found many bytes at
// a time.
//
// Text is decoded by lead byte alone: a lead byte takes as many bytes as the character has that it
// begins, whatever they are. A '<' or '>' among them is hidden, part of that character, and is not
// indexed; base/markup.h finds the same markup by single steps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velda::xmlp {

// What the indexer keeps from one chunk of a text to the next.
struct IndexState {
    size_t closing = 0; // number of '>' so far
    // How many bytes at the start of the next chunk belong to a character that began before it.
    uint32_t carry = 0;
    // Whether any '<' or '>' lay within a character. Set, never cleared: that is up to the caller.
    bool hidesMarkup = false;
};

constexpr size_t chunkSize = 16384;
constexpr size_t indexPadding = 8;

// Writes the offsets of the '<' in `size` bytes, at most chunkSize, and gives their number. `offsets`
// has a capacity of indexPadding more than bytes. The chunks of a text come one after the other, all
// but the last with chunkSize bytes.
using Indexer = size_t (*)(const char *text, size_t size, uint16_t *offsets, IndexState &state);

// Those that this processor has, the fastest first; the last is the one that every processor has.
std::span<const Indexer> indexers();

// The fastest one.
Indexer fastestIndexer();

} // namespace velda::xmlp
