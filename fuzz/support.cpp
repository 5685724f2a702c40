#include "fuzz/support.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// A stream that writes to memory.
struct MemoryFile {
    char *bytes = nullptr;
    size_t size = 0;

    FILE *open() {
        std::free(bytes);
        *this = {};
        return open_memstream(&bytes, &size);
    }
    std::string_view text() const { return {bytes != nullptr ? bytes : "", size}; }
};

MemoryFile output;
MemoryFile lastWritten;

bool isWritten(const char *path) {
    return path == fuzz::pathToWrite || std::strcmp(path, "database.json") == 0;
}

} // namespace

extern "C" {

int LLVMFuzzerInitialize(int *argc, char ***argv);
FILE *__real_fopen(const char *path, const char *mode);
FILE *__wrap_fopen(const char *path, const char *mode);
FILE *__wrap_fopen64(const char *path, const char *mode); // what fopen is to 32-bit libraries
int __real_remove(const char *path);
int __wrap_remove(const char *path);

// The C library lets a program give it another standard output.
int LLVMFuzzerInitialize(int *, char ***) {
    stdout = output.open();
    FUZZ_REQUIRE(stdout != nullptr);
    return 0;
}

FILE *__wrap_fopen(const char *path, const char *mode) {
    return isWritten(path) ? lastWritten.open() : __real_fopen(path, mode);
}

FILE *__wrap_fopen64(const char *path, const char *mode) {
    return __wrap_fopen(path, mode);
}

int __wrap_remove(const char *path) {
    return isWritten(path) ? 0 : __real_remove(path);
}

} // extern "C"

namespace fuzz {

const char *const pathToWrite = "list";

void fail(const char *condition, const char *file, int line) {
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, condition);
    std::abort();
}

Text::Text(std::string_view bytes)
    : bytes_(new char[bytes.size() + 1]), size_(static_cast<uint32_t>(bytes.size())) {
    if (!bytes.empty()) {
        std::memcpy(bytes_.get(), bytes.data(), bytes.size());
    }
    bytes_[size_] = '\0';
}

FailingByte::FailingByte(uint8_t byte) : isOn_(byte != noFailure) {
    if (isOn_) {
        failAllocation(static_cast<uint8_t>(byte - '0'));
    }
}

bool FailingByte::end() {
    const bool wasOn = isOn_;
    isOn_ = false;
    return wasOn && endFailing();
}

std::string_view printed() {
    std::fflush(stdout);
    return output.text();
}

void forgetPrinted() {
    std::rewind(stdout);
}

bool hasPrinted(std::string_view part) {
    return printed().find(part) != std::string_view::npos;
}

std::string_view writtenFile() {
    return lastWritten.text();
}

} // namespace fuzz
