// Texts of elements and numbers in them.
#pragma once

#include <cstdint>
#include <string_view>

namespace velda::appmngr {

struct Integer {
    int32_t
        value;    // what atoi gives: of a number that does not fit, its low half, and of one beyond
                  // 64 bits, that of the nearest one within them
    bool isExact; // the text is this number and nothing else, but for white space around it
};

Integer parseInteger(std::string_view text);

} // namespace velda::appmngr
