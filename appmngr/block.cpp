#include "appmngr/block.h"

#include "common/byte_order.h"
#include "common/owned.h"

#include <algorithm>
#include <lzma.h>

using velda::Owned;

namespace {

constexpr uint32_t propertiesSize = 5;
constexpr uint32_t streamSizeMin = 5; // the range coder's first bytes
constexpr uint8_t propertiesByteLimit = 9 * 5 * 5;

class Decoder {
public:
    Decoder() = default;
    ~Decoder() { lzma_end(&stream_); }
    Decoder(const Decoder &) = delete;
    Decoder &operator=(const Decoder &) = delete;

    // Takes the five properties bytes.
    lzma_ret begin(const uint8_t *properties, uint32_t textCapacity) {
        lzma_filter filters[] = {{LZMA_FILTER_LZMA1, nullptr}, {LZMA_VLI_UNKNOWN, nullptr}};
        const lzma_ret result =
            lzma_properties_decode(&filters[0], nullptr, properties, propertiesSize);
        if (result != LZMA_OK) {
            return result;
        }
        const Owned<void> owner(filters[0].options);
        // No distance reaches further back than the text is long, so a larger dictionary, which the
        // properties may ask for, would only be memory.
        auto *options = static_cast<lzma_options_lzma *>(filters[0].options);
        options->dict_size = std::min(std::max(options->dict_size, uint32_t{LZMA_DICT_SIZE_MIN}),
                                      std::max(textCapacity, uint32_t{LZMA_DICT_SIZE_MIN}));
        return lzma_raw_decoder(&stream_, filters);
    }

    // Decodes until the text is full, at an end marker, on corrupt data or where the input ends.
    void run(const uint8_t *coded, size_t codedSize, char *text, size_t textSize) {
        stream_.next_in = coded;
        stream_.avail_in = codedSize;
        stream_.next_out = reinterpret_cast<uint8_t *>(text);
        stream_.avail_out = textSize;
        while (stream_.avail_out > 0 && lzma_code(&stream_, LZMA_RUN) == LZMA_OK) {
        }
    }

private:
    lzma_stream stream_ = LZMA_STREAM_INIT;
};

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
    Decoder decoder;
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
