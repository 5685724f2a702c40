#include "tests/support/failing_memory.h"

#include <cstdlib>
#include <cstring>
#include <unordered_set>

namespace {

constexpr size_t never = static_cast<size_t>(-1);

size_t untilFailure = never;

// Blocks that the code under test holds. The dependencies' own are not seen being made, so they
// must not be counted when they are freed here. (The set's nodes come from the C++ run-time
// library, which is not wrapped.)
std::unordered_set<void *> &liveSet() {
    static std::unordered_set<void *> blocks;
    return blocks;
}

// From the failure on there is memory again.
bool mayAllocate() {
    return untilFailure == never || untilFailure-- > 0;
}

void *counted(void *block) {
    if (block != nullptr) {
        liveSet().insert(block);
    }
    return block;
}

} // namespace

extern "C" {

void *__real_malloc(size_t size);
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void __real_free(void *block);

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
    liveSet().erase(block);
    return counted(__real_realloc(block, size));
}

void __wrap_free(void *block) {
    liveSet().erase(block);
    __real_free(block);
}

char *__wrap_strdup(const char *text) {
    void *copy = __wrap_malloc(std::strlen(text) + 1);
    return copy != nullptr ? std::strcpy(static_cast<char *>(copy), text) : nullptr;
}

} // extern "C"

size_t liveBlocks() {
    return liveSet().size();
}

size_t failEachAllocation(const std::function<void()> &action, const std::function<void()> &check) {
    for (size_t index = 0;; ++index) {
        untilFailure = index;
        action();
        const bool hasFailed = untilFailure == never;
        untilFailure = never;
        if (!hasFailed) {
            return index;
        }
        check();
    }
}
