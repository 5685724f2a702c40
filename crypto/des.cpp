// DES on buffers. libcrypto has the block cipher; modes, zero fill and room are handled here.

#include "crypto/quelm.h"

// Single DES and MD5 are deprecated there, and the device's formats are made of them.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/crypto.h>
#include <openssl/des.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr int32_t blockSize = QUELM_DES_BLOCK_SIZE;

struct Block {
    uint8_t bytes[QUELM_DES_BLOCK_SIZE] = {};

    Block() = default;
    ~Block() { OPENSSL_cleanse(bytes, sizeof bytes); }
    Block(const Block &) = default;
    Block &operator=(const Block &) = default;

    // A part shorter than a block is completed with zero bytes.
    Block(const uint8_t *source, int32_t length) {
        std::memcpy(bytes, source, static_cast<size_t>(std::min(length, blockSize)));
    }

    void store(uint8_t *destination) const { std::memcpy(destination, bytes, sizeof bytes); }

    Block operator^(const Block &other) const {
        Block result;
        for (int i = 0; i < blockSize; ++i) {
            result.bytes[i] = bytes[i] ^ other.bytes[i];
        }
        return result;
    }
};

// One key schedule for one call.
class Cipher {
public:
    Cipher(const void *key, int encrypt) : direction_(encrypt != 0 ? DES_ENCRYPT : DES_DECRYPT) {
        DES_cblock bytes;
        std::memcpy(bytes, key, sizeof bytes);
        DES_set_key_unchecked(&bytes, &schedule_);
        OPENSSL_cleanse(bytes, sizeof bytes);
    }
    ~Cipher() { OPENSSL_cleanse(&schedule_, sizeof schedule_); }
    Cipher(const Cipher &) = delete;
    Cipher &operator=(const Cipher &) = delete;

    // One block in ECB mode. This is what DES_ecb_encrypt does between loading and storing, without
    // the two megabytes of formatted output and error tables of libcrypto that it would bring into a
    // static program, and without a copy of the block that is left behind.
    Block operator()(const Block &block) {
        DES_LONG halves[2] = {loadHalf(block.bytes), loadHalf(block.bytes + halfSize)};
        DES_encrypt1(halves, &schedule_, direction_);
        Block result;
        storeHalf(result.bytes, halves[0]);
        storeHalf(result.bytes + halfSize, halves[1]);
        OPENSSL_cleanse(halves, sizeof halves);
        return result;
    }

private:
    static constexpr int halfSize = QUELM_DES_BLOCK_SIZE / 2;

    // The cipher's halves are little-endian.
    static DES_LONG loadHalf(const uint8_t *bytes) {
        return DES_LONG{bytes[0]} | DES_LONG{bytes[1]} << 8 | DES_LONG{bytes[2]} << 16 |
               DES_LONG{bytes[3]} << 24;
    }

    static void storeHalf(uint8_t *bytes, DES_LONG half) {
        for (int i = 0; i < halfSize; ++i) {
            bytes[i] = static_cast<uint8_t>(half >> (8 * i));
        }
    }

    DES_key_schedule schedule_;
    int direction_;
};

// How many bytes of an input there are to process: deciphering leaves out what fills no block.
int32_t processedLength(int32_t length, int encrypt) {
    if (length <= 0) {
        return 0;
    }
    return encrypt != 0 ? length : length - length % blockSize;
}

// Gives the number of bytes written. The caller has made sure that there is room for them.
int32_t runEcb(const uint8_t *input, int32_t length, uint8_t *output, const void *key,
               int encrypt) {
    Cipher cipher(key, encrypt);
    const int32_t processed = processedLength(length, encrypt);
    int32_t done = 0;
    for (; done < processed; done += blockSize) {
        cipher(Block(input + done, processed - done)).store(output + done);
    }
    return done;
}

} // namespace

int32_t quelm_des_min_do(const void *input, int32_t inputLength, void *output,
                         int32_t outputCapacity, const void *key, int encrypt) {
    if (input == nullptr || output == nullptr || key == nullptr ||
        int64_t{outputCapacity} - blockSize < inputLength) {
        return 0;
    }
    return runEcb(static_cast<const uint8_t *>(input), inputLength, static_cast<uint8_t *>(output),
                  key, encrypt);
}

int32_t quelm_des_pcbc_do(const void *input, void *output, int32_t length, const void *key,
                          const void *vector, int encrypt) {
    const auto *source = static_cast<const uint8_t *>(input);
    auto *destination = static_cast<uint8_t *>(output);
    Cipher cipher(key, encrypt);
    Block chain(static_cast<const uint8_t *>(vector), blockSize);
    // A length within 7 of the largest would overflow the step, so what is left is counted instead.
    for (int32_t left = processedLength(length, encrypt); left > 0; left -= blockSize) {
        const Block block(source, left);
        const Block result = encrypt != 0 ? cipher(block ^ chain) : cipher(block) ^ chain;
        result.store(destination);
        chain = block ^ result;
        if (left > blockSize) {
            source += blockSize;
            destination += blockSize;
        }
    }
    return 1;
}

int32_t quelm_des_inplace_do(void *buffer, int32_t length, const void *key, int encrypt) {
    if (buffer == nullptr || key == nullptr || length % blockSize != 0) {
        return 0;
    }
    auto *bytes = static_cast<uint8_t *>(buffer);
    runEcb(bytes, length, bytes, key, encrypt);
    return length;
}
