// JSON, made of pieces that are JSON themselves.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A string; a byte that is not UTF-8 becomes U+FFFD.
std::string jsonText(std::string_view text);

// Members whose names need no escapes, and elements, in one line.
using JsonMembers = std::vector<std::pair<std::string_view, std::string>>;
std::string jsonObject(const JsonMembers &members);
std::string jsonArray(const std::vector<std::string> &elements);

// The same with one element to a line.
std::string jsonLines(const std::vector<std::string> &elements);
