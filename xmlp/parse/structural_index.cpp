// All vector code of the library is in this file. Text is taken in blocks of 64 bytes, of which a
// processor's own instructions make bit masks; what is done with the masks is the same for all.

#include "xmlp/parse/structural_index.h"

#include "xmlp/base/chars.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>
#include <span>

#if defined(__x86_64__)
#include <cpuid.h>
#include <immintrin.h>
#elif defined(__ARM_NEON) && !defined(__ARM_BIG_ENDIAN)
#include <arm_neon.h>
#endif

namespace velda::xmlp {
namespace {

constexpr size_t blockSize = 64;

// What is asked of every block.
struct Markup {
    uint64_t less;    // a bit for each '<'
    uint64_t greater; // and for each '>'
    size_t opening;   // how many there are of these
    size_t closing;
    bool hasHighBytes; // of 0x80 and above
};

// Eight bytes, the first one lowest.
uint64_t bytesAt(const char *text) {
    uint64_t bytes = 0;
    std::memcpy(&bytes, text, sizeof bytes);
    if constexpr (std::endian::native == std::endian::big) {
        bytes = __builtin_bswap64(bytes);
    }
    return bytes;
}

constexpr uint64_t everyByte = 0x0101010101010101U;

// From the high bits of eight bytes to a mask.
uint64_t maskOfHighBits(uint64_t bytes) {
    return (bytes >> 7 & everyByte) * 0x0102040810204080U >> 56;
}

uint64_t maskOfByte(const char *block, char byte) {
    uint64_t mask = 0;
    for (size_t i = 0; i < blockSize; i += 8) {
        const uint64_t difference = bytesAt(block + i) ^ everyByte * static_cast<uint8_t>(byte);
        const uint64_t nonZero =
            ((difference & ~(everyByte << 7)) + ~(everyByte << 7)) | difference;
        mask |= maskOfHighBits(~nonZero) << i;
    }
    return mask;
}

// std::popcount, where the processor has no instruction for it, is a call into a run-time library.
size_t countBits(uint64_t bits) {
    bits -= bits >> 1 & 0x5555555555555555U;
    bits = (bits & 0x3333333333333333U) + (bits >> 2 & 0x3333333333333333U);
    bits = (bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0FU;
    return static_cast<size_t>(bits * everyByte >> 56);
}

// Bytes that look like the lead bytes of characters of at least two, three and four bytes by their
// first bits. C0, C1 and F5 to FF are among them, though they begin no character.
struct Leads {
    uint64_t two = 0;
    uint64_t three = 0;
    uint64_t four = 0;
};

Leads leadsByWords(const char *block) {
    Leads leads;
    for (size_t i = 0; i < blockSize; i += 8) {
        const uint64_t bytes = bytesAt(block + i);
        const uint64_t two = bytes & bytes << 1;
        const uint64_t three = two & bytes << 2;
        leads.two |= maskOfHighBits(two) << i;
        leads.three |= maskOfHighBits(three) << i;
        leads.four |= maskOfHighBits(three & bytes << 3) << i;
    }
    return leads;
}

// How far the character that begins at this byte of the block reaches beyond it.
uint32_t reachBeyond(const char *block, size_t place) {
    const size_t end = place + characterLength(block[place]);
    return end > blockSize ? static_cast<uint32_t>(end - blockSize) : 0;
}

// The bytes within characters, by single steps.
uint64_t hiddenByStepping(const char *block, uint32_t &carry) {
    uint64_t hidden = (uint64_t{1} << carry) - 1;
    size_t place = carry;
    while (place < blockSize) {
        const uint32_t length = characterLength(block[place]);
        hidden |= ((uint64_t{1} << length) - 2) << place;
        place += length;
    }
    carry = static_cast<uint32_t>(place - blockSize);
    return hidden;
}

// A superset of the bytes within characters comes from the masks of what looks like a lead byte. Where
// neither markup nor another lead byte is among them, nothing is hidden, every lead byte is one, and only
// the last of them matters to the next block. That is so in well-formed text; the rest is stepped
// through.
template <Leads (*leadsOf)(const char *block)>
[[gnu::noinline]] uint64_t hiddenBytes(const char *block, uint64_t markup, uint32_t &carry) {
    const Leads leads = leadsOf(block);
    const uint64_t within =
        ((uint64_t{1} << carry) - 1) | leads.two << 1 | leads.three << 2 | leads.four << 3;
    if ((within & (markup | leads.two)) != 0) [[unlikely]] {
        return hiddenByStepping(block, carry);
    }
    carry = 0;
    if ((leads.two >> 63 | leads.three >> 62 | leads.four >> 61) != 0) {
        for (size_t place = blockSize - 3; place < blockSize; ++place) {
            carry = std::max(carry, reachBeyond(block, place));
        }
    }
    return 0;
}

template <Markup (*markupOf)(const char *block), Leads (*leadsOf)(const char *block)>
[[gnu::always_inline]] inline size_t indexBlocks(const char *text, size_t size, uint16_t *offsets,
                                                 IndexState &state) {
    uint16_t *end = offsets;
    char last[blockSize];
    size_t closing = 0;
    uint32_t carry = state.carry;
    for (size_t start = 0; start < size; start += blockSize) {
        const char *block = text + start;
        if (size - start < blockSize) {
            std::memset(last, 0, blockSize);
            std::memcpy(last, block, size - start);
            block = last;
        }
        Markup markup = markupOf(block);
        if (markup.hasHighBytes || carry != 0) [[unlikely]] {
            const uint64_t hidden =
                hiddenBytes<leadsOf>(block, markup.less | markup.greater, carry);
            if ((hidden & (markup.less | markup.greater)) != 0) {
                markup.less &= ~hidden;
                markup.greater &= ~hidden;
                markup.opening = countBits(markup.less);
                markup.closing = countBits(markup.greater);
                state.hidesMarkup = true;
            }
        }
        // As many as most blocks have are written in any case: a loop that runs as often as there are
        // bits would end where no processor expects it.
        constexpr size_t most = indexPadding;
        uint64_t less = markup.less;
        const auto write = [&](size_t i) {
            end[i] = static_cast<uint16_t>(start + static_cast<size_t>(std::countr_zero(less)));
            less &= less - 1;
        };
        for (size_t i = 0; i < most; ++i) {
            write(i);
        }
        for (size_t i = most; i < markup.opening; ++i) {
            write(i);
        }
        end += markup.opening;
        closing += markup.closing;
    }
    state.closing += closing;
    state.carry = carry;
    return static_cast<size_t>(end - offsets);
}

Markup markupByWords(const char *block) {
    uint64_t all = 0;
    for (size_t i = 0; i < blockSize; i += 8) {
        all |= bytesAt(block + i);
    }
    const uint64_t greater = maskOfByte(block, '>');
    const uint64_t less = maskOfByte(block, '<');
    return {less, greater, countBits(less), countBits(greater), (all & everyByte << 7) != 0};
}

size_t indexPortably(const char *text, size_t size, uint16_t *offsets, IndexState &state) {
    return indexBlocks<markupByWords, leadsByWords>(text, size, offsets, state);
}

#if defined(__x86_64__)

inline Markup markupBySse2(const char *block) {
    uint64_t less = 0;
    uint64_t greater = 0;
    __m128i all = _mm_setzero_si128();
    for (int part = 0; part < 4; ++part) {
        const int shift = 16 * part;
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(block + shift));
        const auto maskOf = [bytes](char byte) {
            return static_cast<uint64_t>(
                _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte))));
        };
        less |= maskOf('<') << shift;
        greater |= maskOf('>') << shift;
        all = _mm_or_si128(all, bytes);
    }
    return {less, greater, countBits(less), countBits(greater), _mm_movemask_epi8(all) != 0};
}

inline Leads leadsBySse2(const char *block) {
    Leads leads;
    for (int part = 0; part < 4; ++part) {
        const int shift = 16 * part;
        __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(block + shift));
        // The mask of the highest bits, which is then that of the next ones.
        const auto nextMask = [&bytes] {
            const auto mask = static_cast<uint64_t>(_mm_movemask_epi8(bytes));
            bytes = _mm_add_epi8(bytes, bytes);
            return mask;
        };
        const uint64_t one = nextMask();
        const uint64_t two = one & nextMask();
        const uint64_t three = two & nextMask();
        leads.two |= two << shift;
        leads.three |= three << shift;
        leads.four |= (three & nextMask()) << shift;
    }
    return leads;
}

size_t indexBySse2(const char *text, size_t size, uint16_t *offsets, IndexState &state) {
    return indexBlocks<markupBySse2, leadsBySse2>(text, size, offsets, state);
}

[[gnu::target("avx2,bmi,popcnt")]] inline Markup markupByAvx2(const char *block) {
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(block));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(block + 32));
    const auto maskOf = [ low, high ](char byte) __attribute__((target("avx2,bmi,popcnt"))) {
        const __m256i all = _mm256_set1_epi8(byte);
        const auto lower = static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(low, all)));
        const auto upper =
            static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(high, all)));
        return lower | uint64_t{upper} << 32;
    };
    const uint64_t less = maskOf('<');
    const uint64_t greater = maskOf('>');
    return {less, greater, static_cast<size_t>(__builtin_popcountll(less)),
            static_cast<size_t>(__builtin_popcountll(greater)),
            _mm256_movemask_epi8(_mm256_or_si256(low, high)) != 0};
}

[[gnu::target("avx2,bmi,popcnt")]] size_t indexByAvx2(const char *text, size_t size,
                                                      uint16_t *offsets, IndexState &state) {
    return indexBlocks<markupByAvx2, leadsBySse2>(text, size, offsets, state);
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

constexpr Indexer allIndexers[] = {indexByAvx2, indexBySse2, indexPortably};

size_t firstUsableIndexer() {
    return hasAvx2() ? 0 : 1;
}

#elif defined(__ARM_NEON) && !defined(__ARM_BIG_ENDIAN)

// From four times sixteen bytes, all bits set or none, to a mask.
inline uint8x8_t maskByNeon(const uint8x16_t (&bytes)[4]) {
    constexpr uint8_t bits[16] = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
    const uint8x16_t bitOf = vld1q_u8(bits);
    const auto pairsOf = [bitOf](uint8x16_t part) {
        const uint8x16_t own = vandq_u8(part, bitOf);
        return vpadd_u8(vget_low_u8(own), vget_high_u8(own));
    };
    return vpadd_u8(vpadd_u8(pairsOf(bytes[0]), pairsOf(bytes[1])),
                    vpadd_u8(pairsOf(bytes[2]), pairsOf(bytes[3])));
}

inline uint64_t wordOf(uint8x8_t bytes) {
    return vget_lane_u64(vreinterpret_u64_u8(bytes), 0);
}

inline size_t countByNeon(uint8x8_t mask) {
    const uint64x1_t count = vpaddl_u32(vpaddl_u16(vpaddl_u8(vcnt_u8(mask))));
    return static_cast<size_t>(vget_lane_u64(count, 0));
}

inline Markup markupByNeon(const char *block) {
    const auto *bytes = reinterpret_cast<const uint8_t *>(block);
    const uint8x16_t parts[4] = {vld1q_u8(bytes), vld1q_u8(bytes + 16), vld1q_u8(bytes + 32),
                                 vld1q_u8(bytes + 48)};
    const auto maskOf = [&parts](uint8_t byte) {
        const uint8x16_t all = vdupq_n_u8(byte);
        return maskByNeon({vceqq_u8(parts[0], all), vceqq_u8(parts[1], all),
                           vceqq_u8(parts[2], all), vceqq_u8(parts[3], all)});
    };
    const uint8x8_t less = maskOf('<');
    const uint8x8_t greater = maskOf('>');
    const uint8x16_t all = vorrq_u8(vorrq_u8(parts[0], parts[1]), vorrq_u8(parts[2], parts[3]));
    const uint64_t any = wordOf(vorr_u8(vget_low_u8(all), vget_high_u8(all)));
    return {wordOf(less), wordOf(greater), countByNeon(less), countByNeon(greater),
            (any & everyByte << 7) != 0};
}

inline Leads leadsByNeon(const char *block) {
    const auto *bytes = reinterpret_cast<const uint8_t *>(block);
    const uint8x16_t parts[4] = {vld1q_u8(bytes), vld1q_u8(bytes + 16), vld1q_u8(bytes + 32),
                                 vld1q_u8(bytes + 48)};
    const auto atLeast = [&parts](uint8_t byte) {
        const uint8x16_t all = vdupq_n_u8(byte);
        return wordOf(maskByNeon({vcgeq_u8(parts[0], all), vcgeq_u8(parts[1], all),
                                  vcgeq_u8(parts[2], all), vcgeq_u8(parts[3], all)}));
    };
    return {atLeast(0xC0), atLeast(0xE0), atLeast(0xF0)};
}

size_t indexByNeon(const char *text, size_t size, uint16_t *offsets, IndexState &state) {
    return indexBlocks<markupByNeon, leadsByNeon>(text, size, offsets, state);
}

constexpr Indexer allIndexers[] = {indexByNeon, indexPortably};

size_t firstUsableIndexer() {
    return 0;
}

#else

constexpr Indexer allIndexers[] = {indexPortably};

size_t firstUsableIndexer() {
    return 0;
}

#endif

} // namespace

std::span<const Indexer> indexers() {
    return std::span(allIndexers).subspan(firstUsableIndexer());
}

Indexer fastestIndexer() {
    static std::atomic<Indexer> chosen = nullptr;
    Indexer indexer = chosen.load(std::memory_order_relaxed);
    if (indexer == nullptr) {
        indexer = indexers().front();
        chosen.store(indexer, std::memory_order_relaxed);
    }
    return indexer;
}

} // namespace velda::xmlp
