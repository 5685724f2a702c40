#include "tools/pack.h"

#include "appmngr/appmngr.h"
#include "common/owned.h"
#include "tools/replace_file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <lzma.h>
#include <memory>
#include <optional>
#include <span>

namespace {

constexpr size_t textSizeMax = APPMNGR_DB_XML_SIZE - 1; // the loader adds a terminator

constexpr uint32_t dictionarySize = uint32_t{1} << 18;
static_assert(dictionarySize >= textSizeMax);

struct EndStream {
    void operator()(lzma_stream *stream) const { lzma_end(stream); }
};

void complain(const char *path, const char *reason) {
    std::fprintf(stderr, "velda-dbtool: %s: %s\n", path, reason);
}

// The document in `buffer`; empty when it can't be read or no image can carry it.
std::span<const uint8_t> readText(const char *path, std::span<uint8_t> buffer) {
    const velda::OwnedFile file(std::fopen(path, "rb"));
    if (file == nullptr) {
        complain(path, std::strerror(errno));
        return {};
    }
    const size_t size = std::fread(buffer.data(), 1, buffer.size(), file.get());
    if (std::ferror(file.get()) != 0) {
        complain(path, std::strerror(errno));
        return {};
    }
    if (size == 0) {
        complain(path, "the text is empty");
        return {};
    }
    if (size > textSizeMax) {
        std::fprintf(stderr, "velda-dbtool: %s: the text is larger than %zu bytes\n", path,
                     textSizeMax);
        return {};
    }
    if (std::memchr(buffer.data(), '\0', size) != nullptr) {
        complain(path, "the text holds a zero byte, at which a load would end it");
        return {};
    }
    return buffer.first(size);
}

void storeBigEndian(uint8_t *bytes, uint32_t value) {
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<uint8_t>(value >> (24 - 8 * i));
    }
}

void storeLittleEndian(uint8_t *bytes, uint64_t value) {
    for (int i = 0; i < 8; ++i) {
        bytes[i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

// Writes the block header and the LZMA stream of a text. The size of the block, 0 when it is larger
// than the room for it, or nothing when it can't be encoded.
std::optional<size_t> encodeBlock(std::span<const uint8_t> text, std::span<uint8_t> block) {
    lzma_options_lzma options;
    if (lzma_lzma_preset(&options, 9 | LZMA_PRESET_EXTREME)) {
        return std::nullopt;
    }
    // Enough for any text, and a power of two, which is what common .lzma decoders accept.
    options.dict_size = dictionarySize;
    const lzma_filter filters[] = {{LZMA_FILTER_LZMA1, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
    block[0] = 0;
    if (lzma_properties_encode(filters, &block[APPMNGR_BLOCK_PROPERTIES]) != LZMA_OK) {
        return std::nullopt;
    }
    storeLittleEndian(&block[APPMNGR_BLOCK_TEXT_SIZE], text.size());

    lzma_stream stream = LZMA_STREAM_INIT;
    const std::unique_ptr<lzma_stream, EndStream> owner(&stream);
    if (lzma_raw_encoder(&stream, filters) != LZMA_OK) {
        return std::nullopt;
    }
    const auto coded = block.subspan(APPMNGR_BLOCK_HEADER_SIZE);
    stream.next_in = text.data();
    stream.avail_in = text.size();
    stream.next_out = coded.data();
    stream.avail_out = coded.size();
    const lzma_ret result = lzma_code(&stream, LZMA_FINISH);
    if (result == LZMA_OK) { // more to come, and nowhere to put it
        return 0;
    }
    if (result != LZMA_STREAM_END) {
        return std::nullopt;
    }
    return APPMNGR_BLOCK_HEADER_SIZE + coded.size() - stream.avail_out;
}

} // namespace

bool packDatabase(const char *xmlPath, const char *imagePath) {
    static std::array<uint8_t, textSizeMax + 1> textBuffer;
    static std::array<uint8_t, APPMNGR_IMAGE_SIZE> image;
    const auto text = readText(xmlPath, textBuffer);
    if (text.empty()) {
        return false;
    }
    const auto blockSize = encodeBlock(text, std::span(image).subspan<APPMNGR_IMAGE_LENGTH_SIZE>());
    if (!blockSize) {
        complain(xmlPath, "the encoder could not be set up; is there enough memory?");
        return false;
    }
    if (*blockSize == 0) {
        std::fprintf(stderr, "velda-dbtool: %s: the text does not pack into %d bytes\n", xmlPath,
                     static_cast<int>(APPMNGR_BLOCK_SIZE_MAX));
        return false;
    }
    storeBigEndian(image.data(), static_cast<uint32_t>(*blockSize));
    return replaceFile(imagePath, std::span(image).first(APPMNGR_IMAGE_LENGTH_SIZE + *blockSize));
}
