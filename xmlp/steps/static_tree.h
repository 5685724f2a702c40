#pragma once

#include "xmlp/xmlp.h"

#include <string_view>

namespace velda::xmlp {

// Builds the static tree of a body that passed the check. Null, with nothing allocated, when it can't
// be built.
XMLP_NODE *buildStaticTree(std::string_view body);

} // namespace velda::xmlp
