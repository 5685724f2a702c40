// Ownership of what the C library hands out.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace velda {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

struct CloseFile {
    void operator()(FILE *file) const { std::fclose(file); }
};

template <class T>
using Owned = std::unique_ptr<T, Free>;

using OwnedFile = std::unique_ptr<FILE, CloseFile>;

} // namespace velda
