// The texts that are read and written, made anew at each run: the same bytes on every machine.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

struct Text {
    std::string name; // as a column of a table
    std::string bytes;
    size_t elements;
};

// One table of results: texts of a kind.
struct TextGroup {
    std::string title;
    std::vector<Text> texts;
};

constexpr size_t textSizeMax = 204'799; // of a database in an image

// A database of exactly `size` bytes, indented by two spaces a level or without any white space.
Text databaseText(const std::string &name, size_t size, bool compact);

// All texts; the quick ones are those of up to textSizeMax bytes.
std::vector<TextGroup> allTexts(bool quick);

} // namespace bench
