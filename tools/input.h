// What a command reads.
#pragma once

#include "common/owned.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// A file without a name, and a path under which the libraries can open it.
class TemporaryFile {
public:
    // False, after a line on standard error about `name`, when it can't be made.
    bool hold(std::string_view bytes, std::string_view name);
    const std::string &path() const { return path_; }

private:
    velda::OwnedFile file_;
    std::string path_;
};

struct Input {
    std::string name; // for messages
    std::string bytes;
    std::string path; // where the libraries find the same bytes

    TemporaryFile copy; // of what is no ordinary file and can be read only once
};

// Reads the first `limit` bytes of a file, "-" for standard input. Nothing, after a line on standard
// error, when that can't be done.
std::optional<Input> readInput(const char *path, size_t limit);

bool isStandardStream(std::string_view path);

// Writes a result to the file, which is replaced whole or left alone, or, for "-", to standard
// output. False, after a line on standard error, when that can't be done.
bool writeOutput(const char *path, std::string_view bytes);
