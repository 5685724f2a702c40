#include "fuzz/memory.h"

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace {

constexpr size_t never = static_cast<size_t>(-1);

size_t untilFailure = never;

// A set of addresses, quicker than one with a node for each. Blocks of other libraries are freed here
// too and must not count.
class Addresses {
public:
    size_t size() const { return count_; }

    void insert(void *block) {
        if (2 * count_ >= places_.size()) {
            grow();
        }
        places_[find(block)] = block;
        ++count_;
    }

    void erase(void *block) {
        size_t gap = find(block);
        if (block == nullptr || places_[gap] == nullptr) {
            return;
        }
        places_[gap] = nullptr;
        --count_;
        // Those behind it may have had to step over it.
        for (size_t i = next(gap); places_[i] != nullptr; i = next(i)) {
            void *moved = std::exchange(places_[i], nullptr);
            places_[find(moved)] = moved;
        }
    }

private:
    size_t next(size_t place) const { return (place + 1) & (places_.size() - 1); }

    // Its place, or the free one that it would get.
    size_t find(const void *block) const {
        const uint64_t hash = (reinterpret_cast<uintptr_t>(block) >> 4) * 0x9E3779B97F4A7C15U;
        size_t place = static_cast<size_t>(hash >> 32) & (places_.size() - 1);
        while (places_[place] != nullptr && places_[place] != block) {
            place = next(place);
        }
        return place;
    }

    void grow() {
        const std::vector<void *> old =
            std::exchange(places_, std::vector<void *>(2 * places_.size()));
        for (void *block : old) {
            if (block != nullptr) {
                places_[find(block)] = block;
            }
        }
    }

    std::vector<void *> places_ = std::vector<void *>(4096);
    size_t count_ = 0;
};

// The run-time libraries of a fuzzer come here before and after this program's own objects live.
Addresses &live() {
    static Addresses *const blocks = new Addresses;
    return *blocks;
}

// From the failure on there is memory again.
bool mayAllocate() {
    return untilFailure == never || untilFailure-- > 0;
}

void *counted(void *block) {
    if (block != nullptr) {
        live().insert(block);
    }
    return block;
}

} // namespace

extern "C" {

void *__real_malloc(size_t size);
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void __real_free(void *block);

void *__wrap_malloc(size_t size);
void *__wrap_calloc(size_t count, size_t size);
void *__wrap_realloc(void *block, size_t size);
void __wrap_free(void *block);
char *__wrap_strdup(const char *text);

void *__wrap_malloc(size_t size) {
    return mayAllocate() ? counted(__real_malloc(size)) : nullptr;
}

void *__wrap_calloc(size_t count, size_t size) {
    return mayAllocate() ? counted(__real_calloc(count, size)) : nullptr;
}

void *__wrap_realloc(void *block, size_t size) {
    if (!mayAllocate()) {
        return nullptr;
    }
    live().erase(block);
    return counted(__real_realloc(block, size));
}

void __wrap_free(void *block) {
    live().erase(block);
    __real_free(block);
}

char *__wrap_strdup(const char *text) {
    void *copy = __wrap_malloc(std::strlen(text) + 1);
    return copy != nullptr ? std::strcpy(static_cast<char *>(copy), text) : nullptr;
}

} // extern "C"

size_t fuzz::liveBlocks() {
    return live().size();
}

void fuzz::failAllocation(size_t index) {
    untilFailure = index;
}

bool fuzz::endFailing() {
    return std::exchange(untilFailure, never) == never;
}
