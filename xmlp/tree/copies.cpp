#include "xmlp/tree/copies.h"

#include <cstring>

namespace velda::xmlp {

Owned<char> newText(std::string_view text) {
    auto copy = allocate<char>(text.size() + 1);
    if (copy != nullptr) {
        std::memcpy(copy.get(), text.data(), text.size());
        copy.get()[text.size()] = '\0';
    }
    return copy;
}

XMLP_ATTR *newAttr(std::string_view name, std::string_view value) {
    auto nameCopy = newText(name);
    auto valueCopy = value.empty() ? nullptr : newText(value);
    auto attr = allocate<XMLP_ATTR>(sizeof(XMLP_ATTR));
    if (nameCopy == nullptr || attr == nullptr || (valueCopy == nullptr && !value.empty())) {
        return nullptr;
    }
    *attr = {nameCopy.release(), valueCopy.release(), nullptr};
    return attr.release();
}

} // namespace velda::xmlp
