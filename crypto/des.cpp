// DES on buffers. libcrypto has the cipher; zero fill, ECB mode and room are handled here.

#include "crypto/quelm.h"

// Single DES and MD5 are deprecated there, and the device's formats are made of them.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/crypto.h>
#include <openssl/des.h>

#include <cstring>
#include <endian.h>

namespace {

constexpr int32_t blockSize = QUELM_DES_BLOCK_SIZE;

// The eight bytes, the first lowest.
using Block = uint64_t;

Block load(const uint8_t *source) {
    Block block = 0;
    std::memcpy(&block, source, sizeof block);
    return le64toh(block);
}

// A part shorter than a block is completed with zero bytes.
Block load(const uint8_t *source, int32_t length) {
    if (length >= blockSize) {
        return load(source);
    }
    uint8_t bytes[blockSize] = {};
    std::memcpy(bytes, source, static_cast<size_t>(length));
    const Block block = load(bytes);
    OPENSSL_cleanse(bytes, sizeof bytes);
    return block;
}

void store(Block block, uint8_t *destination) {
    block = htole64(block);
    std::memcpy(destination, &block, sizeof block);
}

int directionOf(int encrypt) {
    return encrypt != 0 ? DES_ENCRYPT : DES_DECRYPT;
}

// One for one call.
class KeySchedule {
public:
    explicit KeySchedule(const void *key) {
        DES_cblock bytes;
        std::memcpy(bytes, key, sizeof bytes);
        DES_set_key_unchecked(&bytes, &schedule_);
        OPENSSL_cleanse(bytes, sizeof bytes);
    }
    ~KeySchedule() { OPENSSL_cleanse(&schedule_, sizeof schedule_); }
    KeySchedule(const KeySchedule &) = delete;
    KeySchedule &operator=(const KeySchedule &) = delete;

    DES_key_schedule *get() { return &schedule_; }

private:
    DES_key_schedule schedule_;
};

// ECB mode. A block is what DES_ecb_encrypt does between loading and storing, without the two
// megabytes of formatted output and error tables of libcrypto that it would bring into a static
// program, and with the block in work in one place, wiped when the call ends.
class Cipher {
public:
    Cipher(const void *key, int encrypt) : schedule_(key), direction_(directionOf(encrypt)) {}
    ~Cipher() { OPENSSL_cleanse(halves_, sizeof halves_); }
    Cipher(const Cipher &) = delete;
    Cipher &operator=(const Cipher &) = delete;

    Block operator()(Block block) {
        halves_[0] = static_cast<DES_LONG>(block);
        halves_[1] = static_cast<DES_LONG>(block >> halfBits);
        DES_encrypt1(halves_, schedule_.get(), direction_);
        return Block{halves_[0]} | Block{halves_[1]} << halfBits;
    }

private:
    static constexpr int halfBits = 32;

    KeySchedule schedule_;
    DES_LONG halves_[2];
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
        store(cipher(load(input + done, processed - done)), output + done);
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
    KeySchedule schedule(key);
    DES_cblock chain;
    std::memcpy(chain, vector, sizeof chain);
    DES_pcbc_encrypt(static_cast<const uint8_t *>(input), static_cast<uint8_t *>(output),
                     processedLength(length, encrypt), schedule.get(), &chain,
                     directionOf(encrypt));
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
