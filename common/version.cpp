// The version, from the one place where it is kept: the project's CMakeLists.txt.

#include "common/version.h"

#include "common/common.h"

const char *velda_version(void) {
    return VELDA_VERSION;
}
