// What stands on the command line after the name of a command.
#pragma once

#include <string_view>
#include <vector>

struct Arguments {
    std::string_view command;
    std::vector<const char *> files;
    const char *app = nullptr; // the value of --app
    bool wantsHelp = false;
    bool wantsJson = false;
    bool wantsIndent = false;
    bool wantsApps = false;
    bool wantsTypes = false;
};

// Reads the words after the command into `arguments`. `options` names the options that the command
// takes, with blanks between them; --help is always one. False for a word that is none of them.
bool readArguments(int argc, char **argv, std::string_view options, Arguments &arguments);
