// Texts of elements and numbers in them.
#pragma once

#include <cstdint>
#include <string_view>

namespace velda::appmngr {

// What atoi gives: of a number that does not fit, its low half, and of one beyond 64 bits, that of
// the nearest one within them.
int32_t integerOf(std::string_view text);

} // namespace velda::appmngr
