#include "common/common.h"

#include <algorithm>

namespace {

constexpr uint32_t bitsPerWord = 32;

bool contains(uint32_t n) {
    return n < APPMNGR_APP_BITMAP_BITS;
}

uint32_t mask(uint32_t n) {
    return uint32_t{1} << (n % bitsPerWord);
}

} // namespace

void appmngr_bitmap_set(uint32_t *set, uint32_t n) {
    if (contains(n)) {
        set[n / bitsPerWord] |= mask(n);
    }
}

void appmngr_bitmap_clear(uint32_t *set, uint32_t n) {
    if (contains(n)) {
        set[n / bitsPerWord] &= ~mask(n);
    }
}

int appmngr_bitmap_test(const uint32_t *set, uint32_t n) {
    return contains(n) && (set[n / bitsPerWord] & mask(n)) != 0 ? 1 : 0;
}

int appmngr_bitmap_isEmpty(const uint32_t *set) {
    return std::all_of(set, set + APPMNGR_APP_BITMAP_WORDS, [](uint32_t word) { return word == 0; })
               ? 1
               : 0;
}

void appmngr_bitmap_or(uint32_t *dst, const uint32_t *src) {
    for (int i = 0; i < APPMNGR_APP_BITMAP_WORDS; ++i) {
        dst[i] |= src[i];
    }
}

void appmngr_bitmap_and(uint32_t *dst, const uint32_t *src) {
    for (int i = 0; i < APPMNGR_APP_BITMAP_WORDS; ++i) {
        dst[i] &= src[i];
    }
}
