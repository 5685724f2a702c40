#include "xmlp/parse/static_block.h"

#include <cstdint>
#include <cstring>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace velda::xmlp {
namespace {

// A block of this size is fresh from the system, which hands out its pages one by one as they are first
// touched; that can take longer than filling them.
constexpr size_t largeBlock = size_t{8} << 20;

void askForLargePages(char *block, size_t size) {
#if defined(MADV_HUGEPAGE)
    constexpr uintptr_t pageSize = uintptr_t{2} << 20;
    const auto first = (reinterpret_cast<uintptr_t>(block) + pageSize - 1) / pageSize * pageSize;
    const auto skipped = first - reinterpret_cast<uintptr_t>(block);
    static_cast<void>(
        madvise(block + skipped, (size - skipped) / pageSize * pageSize, MADV_HUGEPAGE));
#endif
}

} // namespace

bool StaticBlock::obtain(const StringTable &table, const Counts &counts) {
    const auto size = CheckedSize(table.usedBytes())
                          .add(counts.valueBytes)
                          .add(counts.attributes, sizeof(XMLP_ATTR))
                          .add(counts.elements, sizeof(XMLP_NODE))
                          .add(sizeof(XMLP_NODE))
                          .bytes();
    bytes_ = size ? allocate<char>(*size) : nullptr;
    if (bytes_ == nullptr) {
        return false;
    }
    if (*size >= largeBlock) {
        askForLargePages(bytes_.get(), *size);
    }
    std::memcpy(bytes_.get(), table.bytes(), table.usedBytes());
    values_ = bytes_.get() + table.usedBytes();
    char *attrs = values_ + counts.valueBytes;
    attrs_ = reinterpret_cast<XMLP_ATTR *>(attrs);
    nodes_ = reinterpret_cast<XMLP_NODE *>(attrs + counts.attributes * sizeof(XMLP_ATTR));
    return true;
}

} // namespace velda::xmlp
