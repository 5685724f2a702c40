#include "xmlp/document/value_copy.h"

#include "xmlp/base/memory.h"

#include <cstring>

namespace velda::xmlp {

bool copyValue(const XMLP_NODE &node, Terminator terminator, XMLP_VALUE &value) {
    const uint32_t size = node.valueSize;
    value = {size, nullptr};
    if (size == 0) {
        return true;
    }
    const auto bytes = CheckedSize(size).add(terminator == Terminator::added ? 1 : 0).bytes();
    auto copy = bytes ? allocate<char>(*bytes) : nullptr;
    if (copy == nullptr) {
        return false;
    }
    std::memcpy(copy.get(), node.value, size);
    if (terminator == Terminator::added) {
        copy.get()[size] = '\0';
    }
    value.value = copy.release();
    return true;
}

} // namespace velda::xmlp

void xmlp_freeValueArray(XMLP_VALUE *values, uint32_t count) {
    if (values == nullptr || count == 0) {
        return;
    }
    for (uint32_t i = 0; i < count; ++i) {
        if (values[i].value != nullptr && values[i].valueSize != 0) {
            std::free(values[i].value);
        }
    }
    std::free(values);
}
