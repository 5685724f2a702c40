// All vector code of the library is in this file. Text is taken in blocks of 64 bytes, of which a
// processor's own instructions make bit masks; what is done with the masks is the same for all.

#include "xmlp/markup_index.h"

#include <atomic>
#include <bit>
#include <cstring>

#if defined(__x86_64__)
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace velda::xmlp {
namespace {

constexpr size_t blockSize = 64;

// A bit for each byte of a block.
struct Masks {
    uint64_t less;
    uint64_t greater;
    uint64_t ampersand;
    uint64_t high; // 0x80 and above
};

// Lead bytes of characters of at least two, three and four bytes. Outside of mostly ASCII text this
// is the dearest part, so it is only asked for where there are high bytes.
struct Leads {
    uint64_t two = 0;
    uint64_t three = 0;
    uint64_t four = 0;
};

Leads leadsOf(const char *block, uint64_t high) {
    Leads leads;
    for (; high != 0; high &= high - 1) {
        const int place = std::countr_zero(high);
        const auto byte = static_cast<unsigned char>(block[place]);
        const uint64_t bit = uint64_t{1} << place;
        if (byte >= 0xC2 && byte <= 0xF4) {
            leads.two |= bit;
            leads.three |= byte >= 0xE0 ? bit : 0;
            leads.four |= byte >= 0xF0 ? bit : 0;
        }
    }
    return leads;
}

// std::popcount, where the processor has no instruction for it, is a call into a run-time library.
[[gnu::always_inline]] inline size_t countBits(uint64_t bits) {
    bits -= bits >> 1 & 0x5555555555555555U;
    bits = (bits & 0x3333333333333333U) + (bits >> 2 & 0x3333333333333333U);
    bits = (bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0FU;
    return static_cast<size_t>(bits * 0x0101010101010101U >> 56);
}

[[gnu::noinline]] void lookForHiddenMarkup(const char *block, uint64_t high, uint64_t markup,
                                           MarkupSummary &summary) {
    const Leads leads = leadsOf(block, high);
    const uint64_t reached = summary.carry | leads.two << 1 | leads.three << 2 | leads.four << 3;
    summary.mayHideMarkup |= (reached & markup) != 0;
    summary.carry = leads.two >> 63 | leads.three >> 62 | leads.four >> 61;
}

template <Masks (*masksOf)(const char *block)>
[[gnu::always_inline]] inline size_t indexBlocks(const char *text, size_t size, uint16_t *offsets,
                                                 MarkupSummary &summary) {
    uint16_t *end = offsets;
    char last[blockSize];
    size_t closing = 0;
    uint64_t ampersands = 0;
    for (size_t start = 0; start < size; start += blockSize) {
        const char *block = text + start;
        if (size - start < blockSize) {
            std::memset(last, 0, blockSize);
            std::memcpy(last, block, size - start);
            block = last;
        }
        const Masks masks = masksOf(block);
        for (uint64_t less = masks.less; less != 0; less &= less - 1) {
            *end++ = static_cast<uint16_t>(start + static_cast<size_t>(std::countr_zero(less)));
        }
        closing += countBits(masks.greater);
        ampersands |= masks.ampersand;
        if ((masks.high | summary.carry) != 0) {
            lookForHiddenMarkup(block, masks.high, masks.less | masks.greater, summary);
        }
    }
    summary.closing += closing;
    summary.hasAmpersand |= ampersands != 0;
    return static_cast<size_t>(end - offsets);
}

Masks masksByBytes(const char *block) {
    Masks masks = {};
    for (size_t i = 0; i < blockSize; ++i) {
        const uint64_t bit = uint64_t{1} << i;
        masks.less |= block[i] == '<' ? bit : 0;
        masks.greater |= block[i] == '>' ? bit : 0;
        masks.ampersand |= block[i] == '&' ? bit : 0;
        masks.high |= (static_cast<unsigned char>(block[i]) & 0x80U) != 0 ? bit : 0;
    }
    return masks;
}

#if defined(__x86_64__)

uint64_t mask(__m128i bytes) {
    return static_cast<uint32_t>(_mm_movemask_epi8(bytes));
}

inline Masks masksBySse2(const char *block) {
    Masks masks = {};
    for (int part = 0; part < 4; ++part) {
        const int shift = 16 * part;
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(block + shift));
        masks.less |= mask(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('<'))) << shift;
        masks.greater |= mask(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('>'))) << shift;
        masks.ampersand |= mask(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('&'))) << shift;
        masks.high |= mask(bytes) << shift;
    }
    return masks;
}

size_t indexMarkupBySse2(const char *text, size_t size, uint16_t *offsets, MarkupSummary &summary) {
    return indexBlocks<masksBySse2>(text, size, offsets, summary);
}

[[gnu::target("avx2")]] inline uint64_t mask(__m256i bytes) {
    return static_cast<uint32_t>(_mm256_movemask_epi8(bytes));
}

[[gnu::target("avx2")]] inline Masks masksByAvx2(const char *block) {
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(block));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(block + 32));
    const auto equal = [ low, high ](char byte) __attribute__((target("avx2"))) {
        const __m256i all = _mm256_set1_epi8(byte);
        return mask(_mm256_cmpeq_epi8(low, all)) | mask(_mm256_cmpeq_epi8(high, all)) << 32;
    };
    return {equal('<'), equal('>'), equal('&'), mask(low) | mask(high) << 32};
}

[[gnu::target("avx2,bmi,popcnt")]] size_t
indexMarkupByAvx2(const char *text, size_t size, uint16_t *offsets, MarkupSummary &summary) {
    return indexBlocks<masksByAvx2>(text, size, offsets, summary);
}

// Asked of the processor itself: the compiler's own test would need a library at run time.
bool hasAvx2() {
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    constexpr unsigned inLeaf1 = bit_OSXSAVE | bit_AVX | bit_POPCNT;
    if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & inLeaf1) != inLeaf1) {
        return false;
    }
    // Does the system keep the wide registers?
    constexpr unsigned sseAndAvxState = 6;
    asm volatile("xgetbv" : "=a"(a), "=d"(d) : "c"(0));
    constexpr unsigned inLeaf7 = bit_AVX2 | bit_BMI;
    return (a & sseAndAvxState) == sseAndAvxState && __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 &&
           (b & inLeaf7) == inLeaf7;
}

IndexMarkup bestIndexer() {
    return hasAvx2() ? indexMarkupByAvx2 : indexMarkupBySse2;
}

#else

IndexMarkup bestIndexer() {
    return indexMarkupPortably;
}

#endif

} // namespace

size_t indexMarkupPortably(const char *text, size_t size, uint16_t *offsets,
                           MarkupSummary &summary) {
    return indexBlocks<masksByBytes>(text, size, offsets, summary);
}

IndexMarkup markupIndexer() {
    static std::atomic<IndexMarkup> chosen = nullptr;
    IndexMarkup indexer = chosen.load(std::memory_order_relaxed);
    if (indexer == nullptr) {
        indexer = bestIndexer();
        chosen.store(indexer, std::memory_order_relaxed);
    }
    return indexer;
}

} // namespace velda::xmlp
