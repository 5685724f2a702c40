// The attribute names that a tag has had so far.
#pragma once

#include "xmlp/base/string_table.h"

#include <array>
#include <string_view>

namespace velda::xmlp {

// Few names are compared one by one; from many on, a table keeps the effort linear.
class AttrNames {
public:
    enum class Result { isNew, isRepeated, noMemory };

    Result add(std::string_view name);

private:
    static constexpr size_t few = 32;

    Result addToTable(std::string_view name);

    std::array<std::string_view, few> names_;
    size_t count_ = 0;
    StringTable table_;
};

} // namespace velda::xmlp
