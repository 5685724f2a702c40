// The load stage: reading the database image and decompressing the text in it.

#include "appmngr/appmngr_internal.h"
#include "common/owned.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <lzma.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

const char *g_appmngr_dbPath;

using velda::Owned;
using velda::OwnedFile;

namespace {

constexpr uint32_t propertiesSize = 5;
constexpr uint32_t streamSizeMin = 5; // the range coder's first bytes
constexpr uint8_t propertiesByteLimit = 9 * 5 * 5;

// What gives its bytes to whoever comes, as often as asked. A pipe gives them to one reader only, and
// opening one or reading it waits for somebody who may never come. A folder gives no bytes.
bool canHoldImage(int descriptor) {
    struct stat status = {};
    if (fstat(descriptor, &status) != 0) {
        return false;
    }
    if (S_ISREG(status.st_mode) || S_ISBLK(status.st_mode) || S_ISCHR(status.st_mode) ||
        S_ISDIR(status.st_mode)) {
        return true;
    }
    errno = ESPIPE;
    return false;
}

// Null, with the reason in errno, also for a path that leads to a pipe.
OwnedFile openForReading(const char *path) {
    // Without O_NONBLOCK opening a pipe would wait; from then on a terminal is read as usual.
    const int descriptor = path != nullptr ? open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC) : -1;
    if (descriptor < 0) {
        return nullptr;
    }
    if (canHoldImage(descriptor) && fcntl(descriptor, F_SETFL, 0) == 0) {
        OwnedFile file(fdopen(descriptor, "r"));
        if (file != nullptr) {
            return file;
        }
    }
    const int reason = errno;
    close(descriptor);
    errno = reason;
    return nullptr;
}

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

uint32_t bigEndian(const uint8_t *bytes) {
    uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return ntohl(value);
}

uint32_t littleEndian(const uint8_t *bytes) {
    return uint32_t{bytes[0]} | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 |
           uint32_t{bytes[3]} << 24;
}

// Decodes a block into a zeroed text buffer and sets the length of the text: what the block declares
// whether all of it could be decoded or not, 0 when it holds nothing that could be decoded, `capacity`
// when it has no header. False when the decoder gets no memory, which is no fault of the block's.
bool decodeBlock(const uint8_t *block, uint32_t blockLength, char *text, uint32_t capacity,
                 uint32_t &length) {
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
    const uint32_t declaredSize = littleEndian(block + APPMNGR_BLOCK_TEXT_SIZE);
    // Nothing beyond the declared size is ever looked at.
    if (begun == LZMA_OK && declaredSize < capacity) {
        decoder.run(block + APPMNGR_BLOCK_HEADER_SIZE, codedSize, text, declaredSize);
    }
    length = declaredSize;
    return true;
}

template <class Byte>
bool obtain(Byte *&buffer, size_t size) {
    buffer = static_cast<Byte *>(std::calloc(size, 1));
    return buffer != nullptr;
}

// Reads the image and decompresses the text; both buffers are zeroed.
int readAppDb() {
    constexpr const char *function = "_appmngr_readAppDb";
    if (_appmngr_readDbFile(static_cast<long>(g_appmngr_dbLayout.appDbOffset), APPMNGR_IMAGE_SIZE,
                            g_appmngr_flashBuf) == -1) {
        appmngr_systemError("read db flash fail\n");
        return -1;
    }
    const uint32_t blockLength = bigEndian(g_appmngr_flashBuf);
    if (blockLength > APPMNGR_BLOCK_SIZE_MAX) {
        appmngr_report(function, 2158, "Block length \"%u\" is beyond the image.\n", blockLength);
        return -1;
    }
    const uint32_t capacity = g_appmngr_dbLayout.appDbXmlSize;
    uint32_t length = 0;
    if (!decodeBlock(g_appmngr_flashBuf + APPMNGR_IMAGE_LENGTH_SIZE, blockLength,
                     g_appmngr_appDbXml, capacity, length)) {
        appmngr_report(function, 2160, "malloc memory faild.\n");
        return -1;
    }
    if (length >= capacity) {
        appmngr_report(function, 2167, "Size of buffer \"%d\" is too small.\n",
                       static_cast<int>(capacity));
        return -1;
    }
    g_appmngr_appDbXml[length] = '\0';
    return 0;
}

// A text buffer that is there already is used again.
bool obtainOrClear(char *&buffer, size_t size) {
    if (buffer == nullptr) {
        return obtain(buffer, size);
    }
    std::memset(buffer, 0, size);
    return true;
}

} // namespace

int appmngr_checkDbPath(const char *path) {
    g_appmngr_dbPath = path;
    return openForReading(path) != nullptr ? 0 : -1;
}

int appmngr_file_alloc(void) {
    std::free(std::exchange(g_appmngr_flashBuf, nullptr));
    const bool hasAll = obtainOrClear(g_appmngr_appDescXml, g_appmngr_dbLayout.appDescXmlSize) &&
                        obtainOrClear(g_appmngr_appDbXml, g_appmngr_dbLayout.appDbXmlSize) &&
                        obtain(g_appmngr_flashBuf, APPMNGR_IMAGE_SIZE);
    if (!hasAll) {
        appmngr_report(__func__, 2400, "malloc memory faild.\n");
        appmngr_file_free();
        return -1;
    }
    return 0;
}

int appmngr_file_free(void) {
    std::free(std::exchange(g_appmngr_flashBuf, nullptr));
    std::free(std::exchange(g_appmngr_appDbXml, nullptr));
    std::free(std::exchange(g_appmngr_appDescXml, nullptr));
    return 0;
}

int _appmngr_readDbFile(long offset, uint32_t size, void *buf) {
    if (buf == nullptr) {
        return -1;
    }
    const OwnedFile file = openForReading(g_appmngr_dbPath);
    if (file == nullptr) {
        return -1;
    }
    // A terminal can't seek, and at offset 0 it need not; a short read leaves the rest as it was.
    static_cast<void>(std::fseek(file.get(), offset, SEEK_SET));
    static_cast<void>(!std::fread(buf, size, 1, file.get()));
    return 0;
}

int _appmngr_readAppDb(void) {
    if (g_appmngr_flashBuf != nullptr) {
        std::memset(g_appmngr_flashBuf, 0, APPMNGR_IMAGE_SIZE);
    }
    return readAppDb();
}

int _appmngr_readFromDatabase(void) {
    if (appmngr_file_alloc() != 0) {
        appmngr_report(__func__, 2564, "appmngr_file_alloc failed\n");
        return -1;
    }
    int result = -1;
    if (readAppDb() != 0) {
        appmngr_report(__func__, 2570, "_appmngr_readAppDb failed\n");
    } else if (appmngr_analyzeDbFile() != 0) {
        appmngr_report(__func__, 2586, "Analyze database failed\n");
    } else {
        result = 0;
    }
    appmngr_file_free();
    return result;
}

int appmngr_load_database(void) {
    appmngr_dbReInit();
    return _appmngr_readFromDatabase();
}
