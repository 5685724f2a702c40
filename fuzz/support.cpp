#include "fuzz/support.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

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

// A file without a name, made at the first use.
int fileToRead() {
    static const int descriptor = memfd_create("image", MFD_CLOEXEC);
    return descriptor;
}

bool isWritten(const char *path) {
    return path == fuzz::pathToWrite || std::strcmp(path, "database.json") == 0;
}

} // namespace

extern "C" {

int LLVMFuzzerInitialize(int *argc, char ***argv);
FILE *__real_fopen(const char *path, const char *mode);
FILE *__wrap_fopen(const char *path, const char *mode);
FILE *__wrap_fopen64(const char *path, const char *mode); // what fopen is to 32-bit libraries
int __real_open(const char *path, int flags, ...);
int __wrap_open(const char *path, int flags, ...);
int __wrap_open64(const char *path, int flags, ...);
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

int __wrap_open(const char *path, int flags, ...) {
    if (path == fuzz::pathToRead) {
        return dup(fileToRead());
    }
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return __real_open(path, flags, mode);
}

int __wrap_open64(const char *path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return __wrap_open(path, flags, mode);
}

int __wrap_remove(const char *path) {
    return isWritten(path) ? 0 : __real_remove(path);
}

} // extern "C"

namespace fuzz {

const char *const pathToRead = "image";
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

void setFile(std::string_view bytes) {
    const int file = fileToRead();
    FUZZ_REQUIRE(ftruncate(file, 0) == 0);
    FUZZ_REQUIRE(pwrite(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
}

std::string_view writtenFile() {
    return lastWritten.text();
}

} // namespace fuzz
