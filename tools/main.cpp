// velda-dbtool: work on database images at a desk.

#include "tools/pack.h"

#include <cstdio>
#include <string_view>

namespace {

constexpr char usage[] = "Usage: velda-dbtool pack <XML> <DB_FILE>\n"
                         "\n"
                         "  pack   make the database image DB_FILE from the document XML\n";

} // namespace

int main(int argc, char **argv) {
    const std::string_view command = argc > 1 ? argv[1] : "";
    if (command == "--help") {
        std::fputs(usage, stdout);
        return 0;
    }
    if (command == "pack" && argc == 4) {
        return packDatabase(argv[2], argv[3]) ? 0 : 1;
    }
    std::fputs(usage, stderr);
    return 1;
}
