#pragma once

#include <string>
#include <vector>

namespace bench {

// How many instructions a program executes, its start included, as callgrind counts them.
double instructionsOf(const std::vector<std::string> &command);

} // namespace bench
