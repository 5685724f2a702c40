// The table of commands.
#pragma once

#include "tools/arguments.h"

#include <string>

struct Command {
    std::string_view name;
    std::string_view synopsis; // after the name
    std::string_view options;  // that it takes, with blanks between them
    size_t fileCount;
    int failure; // exit status where its arguments are wrong
    std::string_view purpose;
    std::string_view details;
    int (*run)(const Arguments &arguments);
};

// Null for a name that no command bears.
const Command *findCommand(std::string_view name);

// How a command is used; with null, all of them.
std::string usageOf(const Command *command);

// A line for each command, its name and its options, for completion.
std::string commandWords();
