#pragma once

#include "xmlp/markup_index.h"
#include "xmlp/xmlp.h"

#include <string_view>

namespace velda::xmlp {

enum class QuickTree { built, declined, noMemory };

// Builds the static tree of a body that has not been checked, by the quick road (quick_scan.h). Prints
// nothing. Unless it is built nothing is left allocated.
QuickTree buildStaticTreeQuickly(std::string_view body, IndexMarkup indexMarkup, XMLP_NODE *&root);

} // namespace velda::xmlp
