#include "tools/input.h"

#include "common/owned.h"
#include "tools/messages.h"
#include "tools/write_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

namespace {

bool readUpTo(FILE *file, size_t limit, std::string &bytes) {
    std::array<char, 65536> piece;
    while (bytes.size() < limit) {
        const size_t wanted = std::min(piece.size(), limit - bytes.size());
        const size_t got = std::fread(piece.data(), 1, wanted, file);
        bytes.append(piece.data(), got);
        if (got < wanted) {
            break;
        }
    }
    return std::ferror(file) == 0;
}

} // namespace

bool isStandardStream(std::string_view path) {
    return path == "-";
}

std::optional<Input> readInput(const char *path, size_t limit) {
    const bool isStandard = isStandardStream(path);
    Input input;
    input.name = isStandard ? "standard input" : path;
    const velda::OwnedFile opened(isStandard ? nullptr : std::fopen(path, "rb"));
    FILE *file = isStandard ? stdin : opened.get();
    if (file == nullptr || !readUpTo(file, limit, input.bytes)) {
        printErrno(input.name, errno);
        return std::nullopt;
    }
    return input;
}

bool writeOutput(const char *path, std::string_view bytes) {
    if (!isStandardStream(path)) {
        return writeFileAtomically(path,
                                   {reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size()});
    }
    return std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
}
