#include "tests/support/failing_memory.h"

#include <cstdlib>
#include <cstring>
#include <unordered_set>

namespace {

constexpr size_t never = static_cast<size_t>(-1);

size_t untilFailure = never;
bool failed = false;

// Blocks that the code under test holds. The dependencies' own are not seen being made, so they
// must not be counted when they are freed here. (The set's nodes come from the C++ run-time
// library, which is not wrapped.)
std::unordered_set<void *> &liveSet() {
    static std::unordered_set<void *> blocks;
    return blocks;
}

bool mayAllocate() {
    if (untilFailure == never) {
        return true;
    }
    if (untilFailure == 0) {
        failed = true;
        untilFailure = never;
        return false;
    }
    --untilFailure;
    return true;
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
    void *moved = __real_realloc(block, size);
    if (moved == nullptr) {
        counted(block);
    }
    return counted(moved);
}

void __wrap_free(void *block) {
    liveSet().erase(block);
    __real_free(block);
}

char *__wrap_strdup(const char *text) {
    const size_t size = std::strlen(text) + 1;
    auto *copy = static_cast<char *>(__wrap_malloc(size));
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}

} // extern "C"

FailingAllocation::FailingAllocation(size_t index) {
    untilFailure = index;
    failed = false;
}

FailingAllocation::~FailingAllocation() {
    untilFailure = never;
}

bool FailingAllocation::hasFailed() const {
    return failed;
}

long liveBlocks() {
    return static_cast<long>(liveSet().size());
}
