#include "appmngr/block.h"

#include "common/byte_order.h"
#include "common/lzma_decoder.h"

namespace {

constexpr uint32_t streamSizeMin = 5; // the range coder's first bytes
constexpr uint8_t propertiesByteLimit = 9 * 5 * 5;

} // namespace

bool velda::appmngr::decodeBlock(const uint8_t *block, uint32_t blockLength, char *text,
                                 uint32_t capacity, uint32_t &length) {
    length = capacity;
    if (blockLength < APPMNGR_BLOCK_HEADER_SIZE) {
        return true;
    }
    const uint8_t *properties = block + APPMNGR_BLOCK_PROPERTIES;
    const uint32_t codedSize = blockLength - APPMNGR_BLOCK_HEADER_SIZE;
    if (codedSize < streamSizeMin || properties[0] >= propertiesByteLimit) {
        length = 0;
        return true;
    }
    LzmaDecoder decoder;
    const lzma_ret begun = decoder.begin(properties, capacity);
    if (begun == LZMA_MEM_ERROR) {
        return false;
    }
    const uint32_t declaredSize = velda::loadLittleEndian(block + APPMNGR_BLOCK_TEXT_SIZE);
    // Nothing beyond the declared size is ever looked at.
    if (begun == LZMA_OK && declaredSize < capacity) {
        decoder.run(block + APPMNGR_BLOCK_HEADER_SIZE, codedSize, text, declaredSize);
    }
    length = declaredSize;
    return true;
}
