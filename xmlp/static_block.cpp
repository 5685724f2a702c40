#include "xmlp/static_block.h"

#include <cstring>

namespace velda::xmlp {

bool StaticBlock::obtain(const NameTable &table, const Counts &counts) {
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
    std::memcpy(bytes_.get(), table.bytes(), table.usedBytes());
    values_ = bytes_.get() + table.usedBytes();
    char *attrs = values_ + counts.valueBytes;
    attrs_ = reinterpret_cast<XMLP_ATTR *>(attrs);
    nodes_ = reinterpret_cast<XMLP_NODE *>(attrs + counts.attributes * sizeof(XMLP_ATTR));
    return true;
}

} // namespace velda::xmlp
