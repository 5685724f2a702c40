// The tool's result: the version of the database and one line for each application.

#include "appmngr/records.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace {

constexpr size_t idSizeMax = sizeof "-2147483648" - 1;

// "id:name", as one piece: most of a formatted print would be its own set-up.
void writeLine(const APPMNGR_APP &app, FILE *file) {
    char line[idSizeMax + 1 + sizeof app.name + 1];
    char *end = std::to_chars(line, line + idSizeMax, app.id).ptr;
    *end++ = ':';
    end = std::copy_n(app.name, strnlen(app.name, sizeof app.name), end);
    *end++ = '\n';
    std::fwrite(line, static_cast<size_t>(end - line), 1, file);
}

} // namespace

int appmngr_saveIdAndName(const char *path) {
    // Appending to a new file, so that whatever stood there is gone and never mixed with the list.
    std::remove(path);
    FILE *file = std::fopen(path, "a");
    if (file == nullptr) {
        appmngr_notice("open %s error!\n", path);
        return -1;
    }
    std::fprintf(file, "%s\n", g_appmngr_appDb.ver);
    for (const APPMNGR_APP &app : velda::appmngr::populatedApplications()) {
        writeLine(app, file);
        std::fflush(file);
    }
    if (std::fclose(file) != 0) {
        appmngr_notice("close %s error!\n", path);
        return -1;
    }
    return 0;
}
