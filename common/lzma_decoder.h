// Decodes the stream of an LZMA block. For who links liblzma; the library of this room does not.
#pragma once

#include "common/owned.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <lzma.h>

namespace velda {

class LzmaDecoder {
public:
    static constexpr uint32_t propertiesSize = 5;

    LzmaDecoder() = default;
    ~LzmaDecoder() { lzma_end(&stream_); }
    LzmaDecoder(const LzmaDecoder &) = delete;
    LzmaDecoder &operator=(const LzmaDecoder &) = delete;

    // Takes the five properties bytes. No distance reaches further back than the text is long, so a dictionary
    // larger than `textCapacity`, which the properties may ask for, would only be memory.
    lzma_ret begin(const uint8_t *properties, uint32_t textCapacity) {
        lzma_filter filters[] = {{LZMA_FILTER_LZMA1, nullptr}, {LZMA_VLI_UNKNOWN, nullptr}};
        const lzma_ret result =
            lzma_properties_decode(&filters[0], nullptr, properties, propertiesSize);
        if (result != LZMA_OK) {
            return result;
        }
        const Owned<void> owner(filters[0].options);
        constexpr uint32_t smallest = LZMA_DICT_SIZE_MIN;
        uint32_t &size = static_cast<lzma_options_lzma *>(filters[0].options)->dict_size;
        size = std::clamp(size, smallest, std::max(textCapacity, smallest));
        return lzma_raw_decoder(&stream_, filters);
    }

    // Decodes until the text is full, at an end marker, on corrupt data or where the input ends. How many
    // bytes that were. Only after a `begin` that gave LZMA_OK.
    size_t run(const uint8_t *coded, size_t codedSize, char *text, size_t textSize) {
        stream_.next_in = coded;
        stream_.avail_in = codedSize;
        stream_.next_out = reinterpret_cast<uint8_t *>(text);
        stream_.avail_out = textSize;
        while (stream_.avail_out > 0 && lzma_code(&stream_, LZMA_RUN) == LZMA_OK) {
        }
        return textSize - stream_.avail_out;
    }

private:
    lzma_stream stream_ = LZMA_STREAM_INIT;
};

} // namespace velda
