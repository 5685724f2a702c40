#pragma once

#include "xmlp/xmlp.h"

namespace velda::xmlp {

// Gives an element without attributes these ones, each as xmlp_addNodeAttr would, and in time linear
// in their number. False, after a line, at the first that is refused.
bool addAttrs(XMLP_NODE *node, const XMLP_ATTR_PAIR *attrs, uint32_t count);

} // namespace velda::xmlp
