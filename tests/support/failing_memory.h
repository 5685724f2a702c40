// Makes an allocation fail. Every malloc, calloc, realloc and strdup of the code under test is
// counted; the test program is linked with wrappers for them.
#pragma once

#include <cstddef>
#include <functional>

// Blocks that wrapped code has obtained and not freed.
size_t liveBlocks();

// Runs `action` with its first, second, third ... allocation failing until it needs no more, and
// `check` after each failure. Gives the number of failures.
size_t failEachAllocation(const std::function<void()> &action, const std::function<void()> &check);
