// The memory of the code under test: how much of it is held, and an allocation that fails. The targets
// are linked with wrappers of the C library's calls; those of other libraries are not seen.
#pragma once

#include <cstddef>

namespace fuzz {

// Blocks obtained and not freed.
size_t liveBlocks();

// Makes the allocation of this index fail, once, counted from here.
void failAllocation(size_t index);

// Ends that; whether it has failed.
bool endFailing();

} // namespace fuzz
