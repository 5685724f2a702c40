// The tool's result: the version of the database and one line for each application.

#include "appmngr/applications.h"

#include <cstdio>

int appmngr_saveIdAndName(const char *path) {
    // Appending to a new file, so that whatever stood there is gone and never mixed with the list.
    std::remove(path);
    FILE *file = std::fopen(path, "a");
    if (file == nullptr) {
        std::printf("open %s error!\n", path);
        return -1;
    }
    std::fprintf(file, "%s\n", g_appmngr_appDb.ver);
    for (const APPMNGR_APP &app : velda::appmngr::filledApplications()) {
        std::fprintf(file, "%d:%s\n", app.id, app.name);
        std::fflush(file);
    }
    if (std::fclose(file) != 0) {
        std::printf("close %s error!\n", path);
        return -1;
    }
    return 0;
}
