// velda-dbtool: a developer's tool for database images.

#include "common/common.h"
#include "tools/commands.h"
#include "tools/database.h"
#include "tools/messages.h"
#include "tools/text.h"

#include <cerrno>
#include <cstdio>

namespace {

int print(const std::string &text) {
    std::fputs(text.c_str(), stdout);
    return 0;
}

int refuse(const Command *command) {
    std::fputs(usageOf(command).c_str(), stderr);
    return command != nullptr ? command->failure : 1;
}

int runCommand(int argc, char **argv) {
    const std::string_view word = argc > 1 ? argv[1] : "";
    if (word == "--help") {
        return print(usageOf(nullptr));
    }
    if (word == "--version") {
        return print(joined({"velda-dbtool ", velda_version(), "\n"}));
    }
    if (word == "--commands") {
        return print(commandWords());
    }
    const Command *command = findCommand(word);
    Arguments arguments;
    arguments.command = word;
    if (command == nullptr || !readArguments(argc - 2, argv + 2, command->options, arguments)) {
        return refuse(command);
    }
    if (arguments.wantsHelp) {
        return print(usageOf(command));
    }
    if (arguments.files.size() != command->fileCount) {
        return refuse(command);
    }
    sendReportsToStandardError();
    const int status = command->run(arguments);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        printErrno("standard output", errno);
        return command->failure;
    }
    return status;
}

} // namespace

int main(int argc, char **argv) {
    return runCommand(argc, argv);
}
