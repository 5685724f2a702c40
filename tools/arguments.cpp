#include "tools/arguments.h"

#include "tools/text.h"

namespace {

struct Flag {
    std::string_view word;
    bool Arguments::*isSet;
};

constexpr Flag flags[] = {
    {"--help", &Arguments::wantsHelp},     {"--json", &Arguments::wantsJson},
    {"--indent", &Arguments::wantsIndent}, {"--apps", &Arguments::wantsApps},
    {"--types", &Arguments::wantsTypes},
};

bool takes(std::string_view options, std::string_view word) {
    return joined({" --help ", options, " "}).find(joined({" ", word, " "})) != std::string::npos;
}

bool setFlag(std::string_view word, Arguments &arguments) {
    for (const Flag &flag : flags) {
        if (flag.word == word) {
            arguments.*flag.isSet = true;
            return true;
        }
    }
    return false;
}

} // namespace

bool readArguments(int argc, char **argv, std::string_view options, Arguments &arguments) {
    constexpr std::string_view app = "--app";
    bool mayBeOption = true;
    for (int i = 0; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (!mayBeOption || word.size() < 2 || word[0] != '-') {
            arguments.files.push_back(argv[i]);
        } else if (word == "--") {
            mayBeOption = false;
        } else if (word == app && takes(options, app) && i + 1 < argc) {
            arguments.app = argv[++i];
        } else if (word.starts_with("--app=") && takes(options, app)) {
            arguments.app = argv[i] + app.size() + 1;
        } else if (!takes(options, word) || !setFlag(word, arguments)) {
            return false;
        }
    }
    return true;
}
