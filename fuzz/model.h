// The database module's model under fuzzing.
#pragma once

#include "fuzz/support.h"

namespace fuzz {

// Requires what a load with this result promises of the model.
void requireSoundModel(int result);

// Writes it in each form there is.
void writeModel();

} // namespace fuzz
