// Sealed buffers and files: an MD5 digest in clear, then the text in DES-ECB.

#include "crypto/quelm.h"
#include "crypto/report.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <openssl/crypto.h>
#include <unistd.h>

namespace {

constexpr int32_t digestSize = QUELM_MD5_SIZE;
// What the cipher wants beyond its input.
constexpr int32_t cipherRoom = QUELM_DES_BLOCK_SIZE;

constexpr uint8_t deviceKey[QUELM_DES_KEY_SIZE] = QUELM_DEVICE_KEY;

constexpr size_t inputBufferSize = 16384;
constexpr size_t inputSizeLimit = inputBufferSize - 1; // an input that fills it counts as too large
constexpr size_t outputBufferSize = 49152;
constexpr mode_t outputMode = 0644;

// Too large for the stacks of devices, and what is in there is not for others to find.
struct Buffers {
    uint8_t input[inputBufferSize];
    uint8_t output[outputBufferSize];
};

struct WipeAndFree {
    void operator()(Buffers *buffers) const {
        OPENSSL_cleanse(buffers, sizeof *buffers);
        std::free(buffers);
    }
};

using OwnedBuffers = std::unique_ptr<Buffers, WipeAndFree>;

class File {
public:
    explicit File(int descriptor) : descriptor_(descriptor) {}
    ~File() {
        if (isOpen()) {
            close(descriptor_);
        }
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

// A null path is one that can't be opened.
int openFile(const char *path, int flags) {
    if (path == nullptr) {
        errno = EFAULT;
        return -1;
    }
    return open(path, flags | O_CLOEXEC, outputMode);
}

int32_t seal(const uint8_t *text, int32_t length, uint8_t *output, int32_t capacity,
             const void *key) {
    // The digest alone takes 16 bytes, also where a negative length asks for no room.
    const bool isTooSmall =
        int64_t{capacity} - digestSize - cipherRoom < length || capacity < digestSize;
    if (isTooSmall || output == nullptr || (text == nullptr && length > 0)) {
        return -1;
    }
    quelm_md5_sum(output, text, length);
    return digestSize +
           quelm_des_min_do(text, length, output + digestSize, capacity - digestSize, key, 1);
}

int32_t unseal(const uint8_t *sealed, int32_t length, uint8_t *output, int32_t capacity,
               const void *key) {
    if (int64_t{capacity} + digestSize - cipherRoom < length) {
        return -1;
    }
    if (sealed == nullptr || length < digestSize) {
        return 0;
    }
    return quelm_des_min_do(sealed + digestSize, length - digestSize, output, capacity, key, 0);
}

} // namespace

int32_t quelm_md5_des_do(const void *input, int32_t inputLength, void *output,
                         int32_t outputCapacity, const void *key, int encrypt) {
    const auto *bytes = static_cast<const uint8_t *>(input);
    auto *result = static_cast<uint8_t *>(output);
    return encrypt != 0 ? seal(bytes, inputLength, result, outputCapacity, key)
                        : unseal(bytes, inputLength, result, outputCapacity, key);
}

int quelm_md5_des_file(const char *inputPath, const char *outputPath, int encrypt) {
    const File input(openFile(inputPath, O_RDONLY));
    if (!input.isOpen()) {
        velda::quelm::report(__func__, "open input file");
        return -1;
    }
    const OwnedBuffers buffers(static_cast<Buffers *>(std::malloc(sizeof(Buffers))));
    if (buffers == nullptr) {
        velda::quelm::report(__func__, __func__);
        return -1;
    }
    const ssize_t length = read(input.descriptor(), buffers->input, inputSizeLimit);
    if (length < 0) {
        velda::quelm::report(__func__, "read");
        return -1;
    }
    if (static_cast<size_t>(length) == inputSizeLimit) {
        return -1;
    }
    const int32_t size =
        quelm_md5_des_do(buffers->input, static_cast<int32_t>(length), buffers->output,
                         sizeof buffers->output, deviceKey, encrypt);
    if (size < 0) {
        return -1;
    }
    const File output(openFile(outputPath, O_RDWR | O_CREAT | O_TRUNC));
    if (!output.isOpen()) {
        velda::quelm::report(__func__, "open output file");
        return -1;
    }
    if (write(output.descriptor(), buffers->output, static_cast<size_t>(size)) < 0) {
        velda::quelm::report(__func__, "write");
    }
    return 0;
}
