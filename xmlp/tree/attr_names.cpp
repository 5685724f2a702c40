#include "xmlp/tree/attr_names.h"

#include <algorithm>

namespace velda::xmlp {

AttrNames::Result AttrNames::add(std::string_view name) {
    if (count_ < few) {
        const auto end = names_.begin() + static_cast<ptrdiff_t>(count_);
        if (std::find(names_.begin(), end, name) != end) {
            return Result::isRepeated;
        }
        names_[count_++] = name;
        return Result::isNew;
    }
    if (count_ == few) {
        constexpr size_t firstTableSize = 1024;
        if (!table_.reserve(firstTableSize)) {
            return Result::noMemory;
        }
        for (const std::string_view earlier : names_) {
            if (addToTable(earlier) == Result::noMemory) {
                return Result::noMemory;
            }
        }
        ++count_;
    }
    return addToTable(name);
}

// Being in the table says nothing, a name may be the tail of another; the tag's mark does.
AttrNames::Result AttrNames::addToTable(std::string_view name) {
    constexpr uint32_t thisTag = 1;
    if (!table_.intern(name)) {
        return Result::noMemory;
    }
    bool isRepeated = false;
    table_.findInTag(name, thisTag, isRepeated);
    return isRepeated ? Result::isRepeated : Result::isNew;
}

} // namespace velda::xmlp
