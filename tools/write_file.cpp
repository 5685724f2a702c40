#include "tools/write_file.h"

#include "tools/messages.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool writeAll(int file, std::span<const uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes = bytes.subspan(written < 0 ? 0 : static_cast<size_t>(written));
    }
    return true;
}

// The mode a file made in the ordinary way would get; mkstemp gives less.
mode_t ordinaryMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

bool writeFileAtomically(const char *path, std::span<const uint8_t> bytes) {
    std::array<char, PATH_MAX> temporary;
    const int length = std::snprintf(temporary.data(), temporary.size(), "%s.XXXXXX", path);
    if (length < 0 || static_cast<size_t>(length) >= temporary.size()) {
        printErrno(path, ENAMETOOLONG);
        return false;
    }
    const int file = mkstemp(temporary.data());
    if (file < 0) {
        printErrno(path, errno);
        return false;
    }
    bool isDone = writeAll(file, bytes) && fchmod(file, ordinaryMode()) == 0;
    isDone = close(file) == 0 && isDone;
    isDone = isDone && std::rename(temporary.data(), path) == 0;
    if (!isDone) {
        printErrno(path, errno);
        unlink(temporary.data());
    }
    return isDone;
}
