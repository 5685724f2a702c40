#include "tests/support/failing_memory.h"

#include <cerrno>
#include <cstring>
#include <unordered_set>
#include <utility>

// The C library's functions, or those of a sanitizer.
#define JOIN(prefix, function) prefix##function
#define JOIN_EXPANDED(prefix, function) JOIN(prefix, function)
#define REAL(function) JOIN_EXPANDED(VELDA_MALLOC_PREFIX, function)

extern "C" {
void *REAL(malloc)(size_t size);
void *REAL(calloc)(size_t count, size_t size);
void *REAL(realloc)(void *block, size_t size);
void REAL(free)(void *block);
}

namespace {

bool isCounting = false;
bool isInside = true; // the set's own nodes are let through, and all before there is a set
bool hasFailed = false;
size_t untilFailure = 0;

// Never destroyed: blocks are freed to the very end.
std::unordered_set<void *> &blocks() {
    static auto &obtained = *new std::unordered_set<void *>;
    return obtained;
}

void change(void *gone, void *obtained) {
    if (!std::exchange(isInside, true)) {
        blocks().erase(gone);
        if (obtained != nullptr) {
            blocks().insert(obtained);
        }
        isInside = false;
    }
}

// From the failure on there is memory again.
template <class Obtain>
void *counted(Obtain obtain, void *replaced = nullptr) {
    if (!isCounting || isInside) {
        return obtain();
    }
    if (!hasFailed && untilFailure-- == 0) {
        hasFailed = true;
        errno = ENOMEM;
        return nullptr;
    }
    void *block = obtain();
    change(replaced, block);
    return block;
}

} // namespace

extern "C" {

void *malloc(size_t size) {
    return counted([&] { return REAL(malloc)(size); });
}

void *calloc(size_t count, size_t size) {
    return counted([&] { return REAL(calloc)(count, size); });
}

void *realloc(void *block, size_t size) {
    return counted([&] { return REAL(realloc)(block, size); }, block);
}

void free(void *block) {
    change(block, nullptr);
    REAL(free)(block);
}

// A sanitizer's would not come here for its memory.
char *strdup(const char *text) {
    const size_t size = std::strlen(text) + 1;
    void *copy = malloc(size);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}

} // extern "C"

void beginCounting(size_t allowed) {
    isInside = true;
    blocks().clear();
    isInside = false;
    untilFailure = allowed;
    hasFailed = false;
    isCounting = true;
}

bool endCounting() {
    isCounting = false;
    return hasFailed;
}

size_t blocksLeft() {
    return blocks().size();
}
