// Where every '<' of a stretch of text is, found many bytes at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velda::xmlp {

// What was seen beside the '<', in all stretches of a text so far.
struct IndexState {
    size_t closing = 0; // number of '>'
    // A '<' or '>' follows so soon after a multi-byte lead byte that a scan by character steps might
    // pass over it.
    bool mayHideMarkup = false;
    uint64_t carry = 0; // bytes at the start of the next stretch that a lead byte reaches
};

constexpr size_t chunkSize = 16384;
constexpr size_t indexPadding = 8;

// Writes the offsets of the '<' in `size` bytes, at most chunkSize, and gives their number. There is
// room for indexPadding more offsets than bytes. The stretches of a text come one after the other.
using Indexer = size_t (*)(const char *text, size_t size, uint16_t *offsets, IndexState &summary);

// Those that this processor has, the quickest first; the last is the one that every processor has.
std::span<const Indexer> indexers();

// The quickest one.
Indexer fastestIndexer();

} // namespace velda::xmlp
