// Lengths of escaped text, wider than the public interface can tell.
#pragma once

#include <cstdint>
#include <string_view>

namespace velda::xmlp {

uint64_t escapedLength(std::string_view text);

} // namespace velda::xmlp
