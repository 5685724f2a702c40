// Parts of a dynamic tree, each in an allocation of its own; null when memory runs out.
#pragma once

#include "xmlp/base/memory.h"
#include "xmlp/xmlp.h"

#include <string_view>

namespace velda::xmlp {

Owned<char> newText(std::string_view text); // NUL-terminated
XMLP_ATTR *newAttr(std::string_view name, std::string_view value);

} // namespace velda::xmlp
