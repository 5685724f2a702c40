// velda-db-parser <DB_FILE> <OUTPUT_FILE>: the list of the applications in a database image.

#include "app/confine.h"
#include "appmngr/appmngr.h"

#include <cstdio>
#include <cstdlib>

namespace {

[[noreturn]] void usage() {
    std::puts("Usage: velda-db-parser <DB_FILE> <OUTPUT_FILE>");
    std::exit(-1);
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 3) {
        usage();
    }
    const char *dbFile = argv[1];
    const char *outputFile = argv[2];
    confineTo(dbFile, outputFile);
    if (appmngr_checkDbPath(dbFile) == -1) {
        std::fprintf(stderr, "invalid database path: %s\n", dbFile);
        return -1;
    }
    if (appmngr_load_database() == -1) {
        std::fputs("Load database fail.\n", stderr);
        return -1;
    }
    if (appmngr_saveIdAndName(outputFile) == -1) {
        std::fprintf(stderr, "Save id and name at %s fail.\n", outputFile);
        return -1;
    }
    return 0;
}
