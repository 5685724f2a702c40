#pragma once

#include "xmlp/markup_index.h"
#include "xmlp/xmlp.h"

#include <string_view>

namespace velda::xmlp {

enum class QuickTree { built, declined, noMemory };

// Build the tree of a body that has not been checked, by the quick road (quick_scan.h). Unless it's
// built nothing is left allocated. They print a line when memory runs out, but for the memory of a
// text of a dynamic tree, as the plain road does, and nothing else ever.
QuickTree buildStaticTreeQuickly(std::string_view body, IndexMarkup indexMarkup, XMLP_NODE *&root);
QuickTree buildDynamicTreeQuickly(std::string_view body, IndexMarkup indexMarkup, XMLP_NODE *&root);

} // namespace velda::xmlp
