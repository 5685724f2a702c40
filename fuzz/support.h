// What the fuzz targets share: judging, reading the input, and a process without standard output and
// files. Wherever an input begins with a failing byte, that tells which allocation fails: '0' the first,
// '1' the second and so on through all byte values, '.' none.
#pragma once

#include "fuzz/memory.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

// Ends the process with the place where a condition does not hold.
#define FUZZ_REQUIRE(condition) \
    ((condition) ? static_cast<void>(0) : fuzz::fail(#condition, __FILE__, __LINE__))

namespace fuzz {

[[noreturn]] void fail(const char *condition, const char *file, int line);

class Input {
public:
    Input(const uint8_t *data, size_t size) : bytes_(reinterpret_cast<const char *>(data), size) {}

    bool isEmpty() const { return bytes_.empty(); }

    // 0 where the input has ended.
    uint8_t byte() {
        const std::string_view taken = take(1);
        return taken.empty() ? uint8_t{0} : static_cast<uint8_t>(taken[0]);
    }

    // As many bytes as there are, at most `size`.
    std::string_view take(size_t size) {
        const std::string_view taken = bytes_.substr(0, size);
        bytes_.remove_prefix(taken.size());
        return taken;
    }

    // Up to a separator, which is passed over.
    std::string_view takeUntil(char separator) {
        const std::string_view taken = take(bytes_.find(separator));
        take(1);
        return taken;
    }

    std::string_view rest() { return take(bytes_.size()); }

private:
    std::string_view bytes_;
};

// A copy with a NUL behind it. A sanitizer sees what is read or written beyond.
class Text {
public:
    explicit Text(std::string_view bytes);

    char *data() const { return bytes_.get(); }
    uint32_t size() const { return size_; }

private:
    std::unique_ptr<char[]> bytes_;
    uint32_t size_;
};

constexpr uint8_t noFailure = '.';

// The allocation that a failing byte tells fails within the life of one of these.
class FailingByte {
public:
    explicit FailingByte(uint8_t byte);
    ~FailingByte() { end(); }
    FailingByte(const FailingByte &) = delete;
    FailingByte &operator=(const FailingByte &) = delete;

    // Ends it; whether an allocation has failed.
    bool end();

private:
    bool isOn_;
};

// What was printed on standard output since the last `forgetPrinted`.
std::string_view printed();
void forgetPrinted();
bool hasPrinted(std::string_view part);

// A file that is only in memory: what was written last to this path or to the JSON document.
extern const char *const pathToWrite;
std::string_view writtenFile();

} // namespace fuzz
