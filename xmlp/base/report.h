// The one place where this library reports: "[ERROR][function():line]: message".
#pragma once

#include <cstdint>

namespace velda::xmlp {

__attribute__((format(printf, 3, 4))) void report(const char *function, int line,
                                                  const char *format, ...);

// The same of a fault in a text, `offset` bytes from its start.
__attribute__((format(printf, 4, 5))) void reportAt(uint32_t offset, const char *function, int line,
                                                    const char *format, ...);

} // namespace velda::xmlp

// Reports in the name of the function it stands in.
#define XMLP_REPORT(...) ::velda::xmlp::report(__func__, __LINE__, __VA_ARGS__)

// Reports in the name of the public function that a helper works for.
#define XMLP_REPORT_FOR(function, ...) ::velda::xmlp::report(function, __LINE__, __VA_ARGS__)
