// Results as tables for people and as JSON.
#pragma once

#include "tools/arguments.h"
#include "tools/json.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct Cell {
    std::string shown;
    std::string json;
    bool isNumber = false;
};

Cell textCell(std::string_view text);
Cell numberCell(int64_t number);
Cell numbersCell(const std::vector<int32_t> &numbers);

struct Table {
    std::string_view name;                 // of the rows in JSON
    std::vector<std::string_view> columns; // their names in JSON, and headings
    std::vector<std::vector<Cell>> rows;
};

// Prints {"command": ..., "file": ..., "<name>": [an object for each row]}; `origin` are the members
// that name the files.
void printJson(const Arguments &arguments, const JsonMembers &origin, const Table &table);

// Prints a table of the file in the form that the arguments ask for.
void printTable(const Arguments &arguments, std::string_view file, const Table &table);

enum class Style { plain, heading, added, removed, changed };

// Prints a line in a style, on a terminal and where NO_COLOR does not forbid it.
void printLine(Style style, std::string_view line);
