// Makes an allocation fail. The test program brings its own malloc, so that every allocation of the
// code under test counts, those of the libraries that it calls among them.
#pragma once

#include <cstddef>

// From here on, after `allowed` allocations, one fails.
void beginCounting(size_t allowed);

// No more do. True when one has failed.
bool endCounting();

// Blocks obtained while allocations were counted and not freed yet.
size_t blocksLeft();
