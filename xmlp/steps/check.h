#pragma once

#include "xmlp/base/diagnosis.h"

namespace velda::xmlp {

// Whether a body passes the structure check.
bool checkBody(const char *bodyStart, const char *bodyEnd, Diagnosis &diagnosis);

} // namespace velda::xmlp
