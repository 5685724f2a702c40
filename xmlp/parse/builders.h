#pragma once

#include "xmlp/parse/structural_index.h"
#include "xmlp/xmlp.h"

#include <string_view>

namespace velda::xmlp {

enum class BuildResult { built, refused, noMemory };

// Build the tree of a body that has not been checked, from the records of a scan (scanner.h). Unless it
// is built nothing is left allocated. They print a line when memory runs out, but for the memory of a
// value of a dynamic tree, and nothing else ever.
BuildResult buildStaticTreeFast(std::string_view body, Indexer indexer, XMLP_NODE *&root);
BuildResult buildDynamicTreeFast(std::string_view body, Indexer indexer, XMLP_NODE *&root);

} // namespace velda::xmlp
