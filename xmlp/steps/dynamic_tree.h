#pragma once

#include "xmlp/base/diagnosis.h"

#include <string_view>

namespace velda::xmlp {

// Builds the dynamic tree of a body that passed the check. Null, with nothing allocated, when it
// can't be built.
XMLP_NODE *buildDynamicTree(std::string_view body, Diagnosis &diagnosis);

} // namespace velda::xmlp
