#include "tools/commands.h"

#include "tools/subcommands.h"

#include <algorithm>

namespace {

constexpr std::string_view oneApp =
    "--app takes an identifier or a name and leaves only what belongs to that application.\n";

constexpr Command commands[] = {
    {"pack", "<XML> <DB_FILE>", "", 2, 1, "make the database image DB_FILE from the document XML",
     "DB_FILE is replaced whole or left alone. \"-\" is standard input or output.\n", packCommand},
    {"check", "[--json] <DB_FILE|XML>", "--json", 1, 2,
     "tell what a load would not take as it stands",
     "A line for each finding, with the path of the element. Exit status: 0 none, 1 some, 2 the\n"
     "file can't be loaded at all.\n",
     checkCommand},
    {"info", "[--json] <DB_FILE>", "--json", 1, 1, "tell version, counts and how full the image is",
     "", infoCommand},
    {"list", "[--json] <DB_FILE>", "--json", 1, 1, "list the applications", "", listCommand},
    {"types", "[--json] <DB_FILE>", "--json", 1, 1, "list the types with their members", "",
     typesCommand},
    {"rules", "[--json] [--app <ID|NAME>] <DB_FILE>", "--json --app", 1, 1, "list the packet rules",
     oneApp, rulesCommand},
    {"dns", "[--json] [--app <ID|NAME>] <DB_FILE>", "--json --app", 1, 1, "list the DNS keywords",
     oneApp, dnsCommand},
    {"xml", "[--indent] <DB_FILE>", "--indent", 1, 1, "write the document to standard output",
     "As it is stored, or, with --indent, written anew without the remarks between elements.\n",
     xmlCommand},
    {"diff", "[--json] <OLD> <NEW>", "--json", 2, 2, "compare two images",
     "Applications and types by identifier, rules and keywords by contents. Exit status: 0 the\n"
     "same, 1 different, 2 one can't be loaded.\n",
     diffCommand},
    {"seal", "<DB_FILE> <CONTAINER>", "", 2, 1, "make an encrypted container of an image",
     "\"-\" is standard input or output.\n", sealCommand},
    {"unseal", "<CONTAINER> <DB_FILE>", "", 2, 1, "make an image of an encrypted container",
     "\"-\" is standard input or output.\n", unsealCommand},
    {"dump", "[--app <ID>] [--apps] [--types] <DB_FILE>", "--app --apps --types", 1, 1,
     "print the database as the device does",
     "All rules, or the rules of one application, the applications, the types.\n", dumpCommand},
    {"export-json", "<DB_FILE>", "", 1, 1, "write the rules to database.json as the device does",
     "The file is made in the current folder; its texts are not escaped.\n", exportJsonCommand},
};

std::string synopsisOf(const Command &command) {
    return "velda-dbtool " + std::string(command.name) + " " + std::string(command.synopsis) + "\n";
}

} // namespace

const Command *findCommand(std::string_view name) {
    const auto *found = std::find_if(std::begin(commands), std::end(commands),
                                     [name](const Command &row) { return row.name == name; });
    return found != std::end(commands) ? found : nullptr;
}

std::string usageOf(const Command *command) {
    std::string text;
    if (command != nullptr) {
        text.append("Usage: ").append(synopsisOf(*command)).append("\n");
        text.append(command->purpose).append("\n").append(command->details);
        return text;
    }
    std::string purposes;
    for (const Command &row : commands) {
        text.append(text.empty() ? "Usage: " : "       ").append(synopsisOf(row));
        std::string name(row.name);
        name.resize(13, ' ');
        purposes.append("  ").append(name).append(row.purpose).append("\n");
    }
    return text + "       velda-dbtool <command> --help | --help | --version\n\n" + purposes +
           "\nAn image can be \"-\" for standard input.\n";
}

std::string commandWords() {
    std::string words;
    for (const Command &row : commands) {
        words.append(row.name).append(" ").append(row.options);
        words.append(row.options.empty() ? "" : " ").append("--help\n");
    }
    return words;
}
