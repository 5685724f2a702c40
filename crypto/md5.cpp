// MD5 and HMAC-MD5. libcrypto has the digest.

#include "crypto/quelm.h"

#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/crypto.h>
#include <openssl/md5.h>

#include <cstring>

namespace {

constexpr size_t hmacBlockSize = 64;

struct Bytes {
    const void *data;
    size_t size;

    Bytes(const void *start, int32_t length)
        : data(start), size(start != nullptr && length > 0 ? static_cast<size_t>(length) : 0) {}
};

// The digest of one range after another.
void digestOf(Bytes first, Bytes second, void *digest) {
    MD5_CTX context;
    MD5_Init(&context);
    MD5_Update(&context, first.data, first.size);
    MD5_Update(&context, second.data, second.size);
    MD5_Final(static_cast<unsigned char *>(digest), &context);
    OPENSSL_cleanse(&context, sizeof context);
}

constexpr int32_t noBytes = 0;

} // namespace

void quelm_md5_sum(void *digest, const void *data, int32_t length) {
    digestOf(Bytes(data, length), Bytes(nullptr, noBytes), digest);
}

int quelm_md5_check(const void *expected, const void *data, int32_t length) {
    uint8_t digest[QUELM_MD5_SIZE];
    quelm_md5_sum(digest, data, length);
    return CRYPTO_memcmp(expected, digest, sizeof digest) == 0 ? 1 : 0;
}

void quelm_hmac_md5(const void *text, int32_t textLength, const void *key, int32_t keyLength,
                    void *digest) {
    const Bytes given(key, keyLength);
    uint8_t block[hmacBlockSize] = {};
    if (given.size > sizeof block) {
        quelm_md5_sum(block, key, keyLength);
    } else if (given.size > 0) {
        std::memcpy(block, given.data, given.size);
    }
    uint8_t innerPad[hmacBlockSize];
    uint8_t outerPad[hmacBlockSize];
    for (size_t i = 0; i < hmacBlockSize; ++i) {
        innerPad[i] = block[i] ^ 0x36;
        outerPad[i] = block[i] ^ 0x5C;
    }
    uint8_t inner[QUELM_MD5_SIZE];
    digestOf(Bytes(innerPad, sizeof innerPad), Bytes(text, textLength), inner);
    digestOf(Bytes(outerPad, sizeof outerPad), Bytes(inner, sizeof inner), digest);
    OPENSSL_cleanse(block, sizeof block);
    OPENSSL_cleanse(innerPad, sizeof innerPad);
    OPENSSL_cleanse(outerPad, sizeof outerPad);
}
