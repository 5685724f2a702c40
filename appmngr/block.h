// The LZMA block of an image.
#pragma once

#include "appmngr/appmngr.h"

namespace velda::appmngr {

// Decodes a block into a zeroed text buffer and sets the length of the text: what the block declares
// whether all of it could be decoded or not, 0 when it holds nothing that could be decoded, `capacity`
// when it has no header. False when the decoder gets no memory, which is no fault of the block's.
bool decodeBlock(const uint8_t *block, uint32_t blockLength, char *text, uint32_t capacity,
                 uint32_t &length);

} // namespace velda::appmngr
