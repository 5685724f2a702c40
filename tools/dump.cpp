// The module's own ways of writing a database.

#include "appmngr/appmngr.h"
#include "common/owned.h"
#include "tools/database.h"
#include "tools/messages.h"
#include "tools/subcommands.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace {

// Unlike loadDatabase, leaves the model where the module's operations find it.
bool loadModel(const Arguments &arguments) {
    const auto image = readImage(arguments.files[0]);
    return image && ::loadModel(*image);
}

} // namespace

int dumpCommand(const Arguments &arguments) {
    int32_t id = 0;
    if (arguments.app != nullptr) {
        const char *end = arguments.app + std::strlen(arguments.app);
        const auto read = std::from_chars(arguments.app, end, id);
        if (read.ec != std::errc() || read.ptr != end) {
            printError(arguments.app, "--app takes an identifier here");
            return 1;
        }
    }
    if (!loadModel(arguments)) {
        return 1;
    }
    if (arguments.app != nullptr) {
        appmngr_writeAppRules(stdout, id);
    }
    if (arguments.wantsApps) {
        appmngr_writeAppList(stdout);
    }
    if (arguments.wantsTypes) {
        appmngr_writeAppTypeList(stdout);
    }
    if (arguments.app == nullptr && !arguments.wantsApps && !arguments.wantsTypes) {
        appmngr_writeAppDb(stdout);
    }
    return 0;
}

int exportJsonCommand(const Arguments &arguments) {
    if (!loadModel(arguments)) {
        return 1;
    }
    constexpr const char *path = "database.json";
    velda::OwnedFile file(std::fopen(path, "w"));
    const bool isWritten = file != nullptr && appmngr_writeRulesJson(file.get()) == 0;
    if (!isWritten || std::fclose(file.release()) != 0) {
        printErrno(path, errno);
        return 1;
    }
    std::puts("Create JSON-Format database success!");
    return 0;
}
