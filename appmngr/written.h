// The result of writing the database to a file of the caller's.
#pragma once

#include <cstdio>

namespace velda::appmngr {

// 0 when all that `write` writes has reached the file, -1 also for a null file.
template <class Write>
int written(FILE *file, Write write) {
    if (file == nullptr) {
        return -1;
    }
    write(file);
    return std::fflush(file) == 0 && std::ferror(file) == 0 ? 0 : -1;
}

} // namespace velda::appmngr
