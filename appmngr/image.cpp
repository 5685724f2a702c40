// The load stage: from a file, an image or a text to the filled model.

#include "appmngr/appmngr_internal.h"
#include "appmngr/block.h"
#include "common/byte_order.h"
#include "common/owned.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using velda::OwnedFile;

namespace {

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

template <class Byte>
bool obtain(Byte *&buffer, size_t size) {
    buffer = static_cast<Byte *>(std::calloc(size, 1));
    return buffer != nullptr;
}

constexpr const char *readFunction = "_appmngr_readAppDb";

int refuseLength(uint32_t capacity) {
    appmngr_report(readFunction, 2167, "Size of buffer \"%d\" is too small.\n",
                   static_cast<int>(capacity));
    return -1;
}

// Decompresses the text of the image in its buffer; the text buffer is zeroed.
int decodeImage() {
    const uint32_t blockLength = velda::loadBigEndian(g_appmngr_flashBuf);
    if (blockLength > APPMNGR_BLOCK_SIZE_MAX) {
        appmngr_report(readFunction, 2158, "Block length \"%u\" is beyond the image.\n",
                       blockLength);
        return -1;
    }
    const uint32_t capacity = g_appmngr_dbLayout.appDbXmlSize;
    uint32_t length = 0;
    if (!velda::appmngr::decodeBlock(g_appmngr_flashBuf + APPMNGR_IMAGE_LENGTH_SIZE, blockLength,
                                     g_appmngr_appDbXml, capacity, length)) {
        appmngr_report(readFunction, 2160, "malloc memory faild.\n");
        return -1;
    }
    if (length >= capacity) {
        return refuseLength(capacity);
    }
    g_appmngr_appDbXml[length] = '\0';
    return 0;
}

// Reads the image and decompresses the text; both buffers are zeroed.
int readAppDb() {
    if (_appmngr_readDbFile(static_cast<long>(g_appmngr_dbLayout.appDbOffset), APPMNGR_IMAGE_SIZE,
                            g_appmngr_flashBuf) == -1) {
        appmngr_systemError("read db flash fail\n");
        return -1;
    }
    return decodeImage();
}

// Puts the text of a load into its zeroed buffer; -1 when it can't.
using BringText = int (*)(const void *source, uint32_t size);

int textOfFile(const void *, uint32_t) {
    return readAppDb();
}

int textOfImage(const void *image, uint32_t size) {
    std::memcpy(g_appmngr_flashBuf, image, std::min<size_t>(size, APPMNGR_IMAGE_SIZE));
    return decodeImage();
}

int textItself(const void *text, uint32_t size) {
    const uint32_t capacity = g_appmngr_dbLayout.appDbXmlSize;
    if (size >= capacity) {
        return refuseLength(capacity);
    }
    std::memcpy(g_appmngr_appDbXml, text, size); // the byte after it is zero
    return 0;
}

// Fills the model. The buffers live for as long as this takes.
int fillFrom(BringText bringText, const void *source, uint32_t size) {
    constexpr const char *function = "_appmngr_readFromDatabase";
    if (appmngr_file_alloc() != 0) {
        appmngr_report(function, 2564, "appmngr_file_alloc failed\n");
        return -1;
    }
    int result = -1;
    if (bringText(source, size) != 0) {
        appmngr_report(function, 2570, "_appmngr_readAppDb failed\n");
    } else if (appmngr_analyzeDbFile() != 0) {
        appmngr_report(function, 2586, "Analyze database failed\n");
    } else {
        result = 0;
    }
    appmngr_file_free();
    return result;
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
    return fillFrom(textOfFile, nullptr, 0);
}

int appmngr_load_database(void) {
    appmngr_dbReInit();
    return _appmngr_readFromDatabase();
}

int appmngr_loadImage(const void *image, uint32_t size) {
    if (image == nullptr) {
        appmngr_report(__func__, 2606, "Invalid param!\n");
        return -1;
    }
    appmngr_dbReInit();
    return fillFrom(textOfImage, image, size);
}

int appmngr_loadText(const char *text, uint32_t size) {
    if (text == nullptr) {
        appmngr_report(__func__, 2620, "Invalid param!\n");
        return -1;
    }
    appmngr_dbReInit();
    return fillFrom(textItself, text, size);
}
