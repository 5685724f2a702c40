#include "tools/image_text.h"

#include "appmngr/appmngr.h"
#include "common/byte_order.h"
#include "common/lzma_decoder.h"
#include "tools/messages.h"

#include <algorithm>
#include <lzma.h>
#include <memory>

using velda::loadBigEndian;
using velda::loadLittleEndian;
using velda::storeBigEndian;
using velda::storeLittleEndian;

namespace {

constexpr size_t textSizeMax = APPMNGR_DB_XML_SIZE - 1; // the loader adds a terminator
constexpr size_t headerEnd = APPMNGR_IMAGE_LENGTH_SIZE + APPMNGR_BLOCK_HEADER_SIZE;

constexpr uint32_t dictionarySize = uint32_t{1} << 18;
static_assert(dictionarySize >= textSizeMax);

struct EndStream {
    void operator()(lzma_stream *stream) const { lzma_end(stream); }
};

using OwnedStream = std::unique_ptr<lzma_stream, EndStream>;

const uint8_t *bytesOf(const std::string &text) {
    return reinterpret_cast<const uint8_t *>(text.data());
}

uint8_t *bytesOf(std::string &text) {
    return reinterpret_cast<uint8_t *>(text.data());
}

// Codes all of the input and takes it off, writes the output and cuts it to what was written.
lzma_ret codeAll(lzma_stream *stream, const uint8_t *input, size_t size, std::string &output,
                 size_t begin) {
    stream->next_in = input;
    stream->avail_in = size;
    stream->next_out = bytesOf(output) + begin;
    stream->avail_out = output.size() - begin;
    lzma_ret result = LZMA_OK;
    while (result == LZMA_OK && stream->avail_out > 0) {
        result = lzma_code(stream, LZMA_FINISH);
    }
    output.resize(output.size() - stream->avail_out);
    return result;
}

} // namespace

std::optional<ImageHeader> readImageHeader(const Input &image) {
    std::string start = image.bytes.substr(0, headerEnd);
    start.resize(headerEnd, '\0'); // as a load reads a short file
    const uint8_t *bytes = bytesOf(start);
    ImageHeader header = {};
    header.blockLength = loadBigEndian(bytes);
    if (header.blockLength < APPMNGR_BLOCK_HEADER_SIZE ||
        header.blockLength > APPMNGR_BLOCK_SIZE_MAX) {
        printError(image.name, "no database image: a block of " +
                                   std::to_string(header.blockLength) + " bytes");
        return std::nullopt;
    }
    const uint8_t *block = bytes + APPMNGR_IMAGE_LENGTH_SIZE;
    const uint32_t properties = block[APPMNGR_BLOCK_PROPERTIES];
    header.lc = properties % 9;
    header.lp = properties / 9 % 5;
    header.pb = properties / 45;
    header.dictionarySize = loadLittleEndian(block + APPMNGR_BLOCK_PROPERTIES + 1);
    header.textSize = loadLittleEndian(block + APPMNGR_BLOCK_TEXT_SIZE);
    return header;
}

std::optional<std::string> decodeText(const Input &image) {
    const auto header = readImageHeader(image);
    if (!header) {
        return std::nullopt;
    }
    const uint8_t *block = bytesOf(image.bytes) + APPMNGR_IMAGE_LENGTH_SIZE;
    velda::LzmaDecoder decoder;
    if (header->textSize > textSizeMax || image.bytes.size() <= headerEnd ||
        decoder.begin(block + APPMNGR_BLOCK_PROPERTIES, dictionarySize) != LZMA_OK) {
        printError(image.name, "the text can't be decoded: its header is damaged");
        return std::nullopt;
    }
    const size_t coded = std::min(image.bytes.size() - headerEnd,
                                  size_t{header->blockLength} - APPMNGR_BLOCK_HEADER_SIZE);
    std::string text(header->textSize, '\0');
    text.resize(decoder.run(bytesOf(image.bytes) + headerEnd, coded, text.data(), text.size()));
    if (text.size() < header->textSize) {
        printError(image.name, "the text can't be decoded: it is damaged behind byte " +
                                   std::to_string(text.size()));
        return std::nullopt;
    }
    return text;
}

std::optional<Input> readDocument(const char *path) {
    auto document = readInput(path, textSizeMax + 1);
    return document && canBeCarried(*document) ? std::move(document) : std::nullopt;
}

bool canBeCarried(const Input &document) {
    const std::string &text = document.bytes;
    if (text.empty()) {
        printError(document.name, "the text is empty");
    } else if (text.size() > textSizeMax) {
        printError(document.name,
                   "the text is larger than " + std::to_string(textSizeMax) + " bytes");
    } else if (text.find('\0') != std::string::npos) {
        printError(document.name, "the text holds a zero byte, at which a load would end it");
    } else {
        return true;
    }
    return false;
}

std::optional<std::string> encodeImage(const Input &document) {
    std::string image(APPMNGR_IMAGE_SIZE, '\0');
    uint8_t *block = bytesOf(image) + APPMNGR_IMAGE_LENGTH_SIZE;
    lzma_options_lzma options;
    lzma_filter filters[] = {{LZMA_FILTER_LZMA1, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
    lzma_stream stream = LZMA_STREAM_INIT;
    const OwnedStream owner(&stream);
    bool isReady = !lzma_lzma_preset(&options, 9 | LZMA_PRESET_EXTREME);
    // Enough for any text, and a power of two, which is what common .lzma decoders accept.
    options.dict_size = dictionarySize;
    isReady = isReady &&
              lzma_properties_encode(filters, block + APPMNGR_BLOCK_PROPERTIES) == LZMA_OK &&
              lzma_raw_encoder(&stream, filters) == LZMA_OK;
    const std::string &text = document.bytes;
    storeLittleEndian(block + APPMNGR_BLOCK_TEXT_SIZE, text.size());
    const lzma_ret result =
        isReady ? codeAll(&stream, bytesOf(text), text.size(), image, headerEnd) : LZMA_MEM_ERROR;
    if (result == LZMA_OK) { // more to come, and nowhere to put it
        printError(document.name, "the text does not pack into " +
                                      std::to_string(APPMNGR_BLOCK_SIZE_MAX) + " bytes");
        return std::nullopt;
    }
    if (result != LZMA_STREAM_END) {
        printError(document.name, "the encoder could not be set up; is there enough memory?");
        return std::nullopt;
    }
    storeBigEndian(bytesOf(image), static_cast<uint32_t>(image.size() - APPMNGR_IMAGE_LENGTH_SIZE));
    return image;
}
