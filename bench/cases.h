// What is measured: pieces of work, each beside the one that it is compared with.
#pragma once

#include "bench/texts.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Case {
    std::string row;
    std::string reference; // the row that this one is set in relation to; itself for that one
    std::function<void()> once;
    std::function<void()> prepare = {}; // before each `once`, not measured
};

// The cases that are measured in turns, and what their times are divided by to be told.
struct Column {
    std::string name;
    size_t bytes;
    std::vector<Case> cases;
};

Column readingColumn(const Text &text);
Column writingColumn(const Text &text);

// DES and MD5 on so many bytes, beside libcrypto's bare loop over the same bytes.
Column cipherColumn(size_t bytes);

} // namespace bench
