// The module's own ways of writing a database.

#include "appmngr/appmngr.h"
#include "tools/complain.h"
#include "tools/database.h"
#include "tools/subcommands.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Unlike loadDatabase, leaves the model where the module's operations find it.
bool loadModel(const Arguments &arguments) {
    const auto image = readImage(arguments.files[0]);
    return image && ::loadModel(*image);
}

// The module ends the process where it can't open its file.
bool canBeWritten(const char *path) {
    const int file = open(path, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0) {
        complainOfSystem(path, errno);
        return false;
    }
    close(file);
    return true;
}

} // namespace

int dumpCommand(const Arguments &arguments) {
    int32_t id = 0;
    if (arguments.app != nullptr) {
        const char *end = arguments.app + std::strlen(arguments.app);
        const auto read = std::from_chars(arguments.app, end, id);
        if (read.ec != std::errc() || read.ptr != end) {
            complain(arguments.app, "--app takes an identifier here");
            return 1;
        }
    }
    if (!loadModel(arguments)) {
        return 1;
    }
    if (arguments.app != nullptr) {
        appmngr_dumpAppRules(id);
    }
    if (arguments.wantsApps) {
        appmngr_dumpAppList();
    }
    if (arguments.wantsTypes) {
        appmngr_dumpAppTypeList();
    }
    if (arguments.app == nullptr && !arguments.wantsApps && !arguments.wantsTypes) {
        appmngr_dumpAppDb();
    }
    return 0;
}

int exportJsonCommand(const Arguments &arguments) {
    if (!loadModel(arguments) || !canBeWritten("database.json")) {
        return 1;
    }
    appmngr_createJsonDb();
    return 0;
}
