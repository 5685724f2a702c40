// Ownership of malloc'ed memory, and sizes that cannot overflow.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>

namespace velda::xmlp {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

template <class T>
using Owned = std::unique_ptr<T, Free>;

template <class T>
Owned<T> allocate(size_t bytes) {
    return Owned<T>(static_cast<T *>(std::malloc(bytes)));
}

// A sum of products of byte counts; empty from the first overflow on.
class CheckedSize {
public:
    explicit CheckedSize(size_t bytes) : bytes_(bytes) {}

    CheckedSize &add(size_t count, size_t each = 1) {
        size_t product = 0;
        if (__builtin_mul_overflow(count, each, &product) ||
            __builtin_add_overflow(bytes_, product, &bytes_)) {
            overflowed_ = true;
        }
        return *this;
    }

    std::optional<size_t> bytes() const {
        return overflowed_ ? std::nullopt : std::optional<size_t>(bytes_);
    }

private:
    size_t bytes_;
    bool overflowed_ = false;
};

} // namespace velda::xmlp
