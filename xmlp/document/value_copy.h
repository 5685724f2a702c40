// Texts of elements handed out by value.
#pragma once

#include "xmlp/xmlp.h"

namespace velda::xmlp {

enum class Terminator { none, added };

// Copies an element's text into a record; a null value for an element without text. False when
// there is no memory for it.
bool copyValue(const XMLP_NODE &node, Terminator terminator, XMLP_VALUE &value);

} // namespace velda::xmlp
