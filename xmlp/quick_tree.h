#pragma once

#include "xmlp/markup_index.h"
#include "xmlp/xmlp.h"

#include <string_view>

namespace velda::xmlp {

enum class QuickTree { built, declined, noMemory };

// Builds the static tree of a body that has not been checked, by the quick road (quick_scan.h). Unless
// it is built nothing is left allocated. When memory runs out it prints what the plain road prints,
// and nothing else ever.
QuickTree buildStaticTreeQuickly(std::string_view body, IndexMarkup indexMarkup, XMLP_NODE *&root);

// The same for a dynamic tree. Want of the memory that only the scan needs declines the body.
QuickTree buildDynamicTreeQuickly(std::string_view body, IndexMarkup indexMarkup, XMLP_NODE *&root);

} // namespace velda::xmlp
