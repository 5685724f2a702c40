#pragma once

#include "xmlp/base/diagnosis.h"

#include <string_view>

namespace velda::xmlp {

// Builds the static tree of a body that passed the check. Null, with nothing allocated, when it can't
// be built.
XMLP_NODE *buildStaticTree(std::string_view body, Diagnosis &diagnosis);

} // namespace velda::xmlp
