// The commands of containers in a build that leaves out libcrypto.

#include "tools/messages.h"
#include "tools/subcommands.h"

namespace {

int refuse(const Arguments &arguments) {
    printError(arguments.files[0],
               "this velda-dbtool was built without containers (VELDA_BUILD_CONTAINER)");
    return 1;
}

} // namespace

int sealCommand(const Arguments &arguments) {
    return refuse(arguments);
}

int unsealCommand(const Arguments &arguments) {
    return refuse(arguments);
}
