// The one place where this library reports.
#pragma once

namespace velda::quelm {

// A text with the reason that errno tells.
void report(const char *function, const char *text);

} // namespace velda::quelm
