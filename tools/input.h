// What a command reads.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

struct Input {
    std::string name; // for messages
    std::string bytes;
};

// Reads the first `limit` bytes of a file, "-" for standard input. Nothing, after a line on standard
// error, when that can't be done.
std::optional<Input> readInput(const char *path, size_t limit);

bool isStandardStream(std::string_view path);

// Writes a result to the file, which is replaced whole or left alone, or, for "-", to standard
// output. False, after a line on standard error, when that can't be done.
bool writeOutput(const char *path, std::string_view bytes);
