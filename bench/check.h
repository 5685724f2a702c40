// What must hold before anything is measured.
#pragma once

#include "bench/texts.h"

#include <string>

namespace bench {

// Tells what can't be measured and ends the program.
[[noreturn]] void refuse(const std::string &what, const std::string &why);

// Ends the program unless every parser accepts the text and finds all of its elements, and all
// writers write the same of it.
void checkParsers(const Text &text);

} // namespace bench
