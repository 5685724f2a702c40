#pragma once

#include "xmlp/xmlp.h"

#include <string_view>

namespace velda::xmlp {

constexpr std::string_view itemName = "item";

// Types a node just linked, and its parent, by the rule for elements named "item". The error when it may
// not stand there, else XMLP_ERROR_NONE.
XMLP_ERROR_CODE setType(XMLP_NODE &node, bool isStatic);

} // namespace velda::xmlp
