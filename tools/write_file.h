#pragma once

#include <cstdint>
#include <span>

// Makes `bytes` the contents of the file at `path`, all of them or, on failure, none: they are
// written beside it and moved into place. False, after a line on standard error, when that can't be
// done.
bool writeFileAtomically(const char *path, std::span<const uint8_t> bytes);
