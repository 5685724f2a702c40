// DES, digests and what is made of them. Eight bytes of key, eight of vector, then the data.

#include "appmngr/appmngr_internal.h"
#include "crypto/quelm.h"
#include "fuzz/support.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using namespace fuzz;

namespace {

constexpr int32_t blockSize = QUELM_DES_BLOCK_SIZE;

// Of just this size. Filled, so that what was written can be told.
std::string room(int32_t size) {
    return std::string(static_cast<size_t>(size), '\x5A');
}

int32_t sizeOf(std::string_view bytes) {
    return static_cast<int32_t>(bytes.size());
}

std::string completed(std::string_view data) {
    std::string blocks(data);
    return blocks.append((0 - data.size()) % blockSize, '\0');
}

std::string encipher(std::string_view data, const char *key) {
    std::string output = room(sizeOf(data) + blockSize);
    const int32_t size =
        quelm_des_min_do(data.data(), sizeOf(data), output.data(), sizeOf(output), key, 1);
    FUZZ_REQUIRE(size == sizeOf(completed(data)));
    return output.substr(0, static_cast<size_t>(size));
}

void checkBlocks(std::string_view data, const char *key) {
    const std::string whole = completed(data);
    const std::string enciphered = encipher(data, key);
    std::string plain = room(sizeOf(enciphered) + blockSize);
    FUZZ_REQUIRE(quelm_des_min_do(enciphered.data(), sizeOf(enciphered), plain.data(),
                                  sizeOf(plain), key, 0) == sizeOf(whole));
    FUZZ_REQUIRE(plain.compare(0, whole.size(), whole) == 0);

    std::string inPlace = whole;
    FUZZ_REQUIRE(quelm_des_inplace_do(inPlace.data(), sizeOf(inPlace), key, 1) == sizeOf(whole));
    FUZZ_REQUIRE(inPlace == enciphered);
    FUZZ_REQUIRE(quelm_des_inplace_do(inPlace.data(), sizeOf(inPlace), key, 0) == sizeOf(whole));
    FUZZ_REQUIRE(inPlace == whole);

    // What is no multiple of a block, and too little room.
    std::string part(data);
    const bool isWhole = data.size() % blockSize == 0;
    FUZZ_REQUIRE(quelm_des_inplace_do(part.data(), sizeOf(part), key, 0) ==
                 (isWhole ? sizeOf(data) : 0));
    FUZZ_REQUIRE(isWhole || part == data);
    std::string small = room(sizeOf(data) + blockSize - 1);
    FUZZ_REQUIRE(quelm_des_min_do(data.data(), sizeOf(data), small.data(), sizeOf(small), key, 0) ==
                 0);
    FUZZ_REQUIRE(small == room(sizeOf(small)));
}

void checkChained(std::string_view data, const char *key, const char *vector) {
    const std::string whole = completed(data);
    std::string enciphered = room(sizeOf(whole));
    std::string plain = room(sizeOf(whole));
    quelm_des_pcbc_do(data.data(), enciphered.data(), sizeOf(data), key, vector, 1);
    quelm_des_pcbc_do(enciphered.data(), plain.data(), sizeOf(enciphered), key, vector, 0);
    FUZZ_REQUIRE(plain == whole);
}

void checkSealed(std::string_view data, const char *key) {
    std::string sealed = room(sizeOf(data) + QUELM_MD5_SIZE + blockSize);
    const int32_t size =
        quelm_md5_des_do(data.data(), sizeOf(data), sealed.data(), sizeOf(sealed), key, 1);
    const std::string whole = completed(data);
    FUZZ_REQUIRE(size == QUELM_MD5_SIZE + sizeOf(whole));
    std::string plain = room(size - blockSize);
    FUZZ_REQUIRE(quelm_md5_des_do(sealed.data(), size, plain.data(), sizeOf(plain), key, 0) ==
                 sizeOf(whole));
    FUZZ_REQUIRE(plain.compare(0, whole.size(), whole) == 0);
    FUZZ_REQUIRE(quelm_md5_check(sealed.data(), plain.data(), sizeOf(data)) == 1);
    FUZZ_REQUIRE(quelm_md5_des_do(data.data(), sizeOf(data), sealed.data(),
                                  sizeOf(data) + QUELM_MD5_SIZE + blockSize - 1, key, 1) == -1);
    std::string opened = room(std::max(sizeOf(data) - blockSize, 0));
    quelm_md5_des_do(data.data(), sizeOf(data), opened.data(), sizeOf(opened), key, 0);
}

// A file that is only in memory.
class File {
public:
    File() : descriptor_(memfd_create("fuzz", MFD_CLOEXEC)) {
        FUZZ_REQUIRE(descriptor_ >= 0);
        std::snprintf(path_, sizeof path_, "/proc/self/fd/%d", descriptor_);
    }

    const char *path() const { return path_; }

    void write(std::string_view bytes) const {
        FUZZ_REQUIRE(ftruncate(descriptor_, 0) == 0);
        FUZZ_REQUIRE(pwrite(descriptor_, bytes.data(), bytes.size(), 0) == sizeOf(bytes));
    }

    std::string read() const {
        std::string bytes = room(16 * 1024);
        const ssize_t size = pread(descriptor_, bytes.data(), bytes.size(), 0);
        return bytes.substr(0, static_cast<size_t>(size));
    }

private:
    int descriptor_;
    char path_[32];
};

void checkSealedFile(std::string_view data) {
    static const File plain;
    static const File sealed;
    constexpr size_t largest = 16360; // of which the sealed form is one that can be opened again
    const std::string_view part = data.substr(0, largest);
    plain.write(part);
    FUZZ_REQUIRE(quelm_md5_des_file(plain.path(), sealed.path(), 1) == 0);
    FUZZ_REQUIRE(sealed.read().size() == QUELM_MD5_SIZE + completed(part).size());
    FUZZ_REQUIRE(quelm_md5_des_file(sealed.path(), plain.path(), 0) == 0);
    FUZZ_REQUIRE(plain.read() == completed(part));
    sealed.write(part);
    FUZZ_REQUIRE(quelm_md5_des_file(sealed.path(), plain.path(), 0) == 0);
}

void checkDigests(std::string_view data, std::string_view key) {
    char digest[QUELM_MD5_SIZE];
    quelm_hmac_md5(data.data(), sizeOf(data), key.data(), sizeOf(key), digest);
    quelm_md5_sum(digest, data.data(), sizeOf(data));
    FUZZ_REQUIRE(quelm_md5_check(digest, data.data(), sizeOf(data)) == 1);
    digest[data.size() % QUELM_MD5_SIZE] ^= 1;
    FUZZ_REQUIRE(quelm_md5_check(digest, data.data(), sizeOf(data)) == 0);
}

constexpr char containerKey[] = "\x5C\x1E\x93\xA7\x02\x6B\xD8\xF4";

// A container of this text, which begins with its header.
std::string containerOf(const std::string &text) {
    std::string sealed = room(QUELM_MD5_SIZE);
    quelm_md5_sum(sealed.data(), text.data(), sizeOf(text));
    return encipher(sealed + text, containerKey);
}

int32_t openContainer(std::string_view container, std::string &opened) {
    opened = room(sizeOf(container) + blockSize);
    uint32_t size = static_cast<uint32_t>(opened.size());
    const int32_t result = appmngr_decrypt(opened.data(), &size, container.data(),
                                           static_cast<uint32_t>(container.size()));
    FUZZ_REQUIRE(size <= opened.size());
    opened.resize(size);
    return result;
}

int32_t toImage(std::string_view container) {
    char version[5];
    const int32_t result = appmngr_db_writeAppDbFromDatabase(
        {0, static_cast<uint32_t>(container.size()), container.data()}, version);
    FUZZ_REQUIRE(result == APPMNGR_SUCCESS || !printed().empty());
    return result;
}

// The input as a container, as the text of one, and as the data behind a sound header.
void checkContainer(std::string_view data) {
    std::string opened;
    openContainer(data, opened);
    toImage(data);
    if (data.size() >= 16) {
        const std::string ofText = containerOf(std::string(data));
        openContainer(ofText, opened);
        toImage(ofText);
    }
    if (data.size() > APPMNGR_BLOCK_SIZE_MAX) {
        return;
    }
    // Length, version 1.2.0, magic code, reserved.
    const size_t size = data.size();
    const char header[] = {
        0, 0, static_cast<char>(size >> 8), static_cast<char>(size), 0, 1, 2, 0, 4, 0, 0, 1, 0, 0,
        0, 0};
    const std::string text = std::string(header, sizeof header).append(data);
    const std::string container = containerOf(text);
    FUZZ_REQUIRE(openContainer(container, opened) == 1 && opened == text);
    FUZZ_REQUIRE(toImage(container) == APPMNGR_SUCCESS);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Input input(data, size);
    const std::string keys = std::string(input.take(16)).append(16, '\0');
    const std::string bytes(input.rest());
    const char *key = keys.data();
    forgetPrinted();
    checkBlocks(bytes, key);
    checkChained(bytes, key, key + blockSize);
    checkSealed(bytes, key);
    checkSealedFile(bytes);
    checkDigests(bytes, {key, size % keys.size()});
    checkContainer(bytes);
    return 0;
}
