# Another Debian architecture: -DVELDA_ARCH=<its name in Debian>, one of those below. What is built
# runs under qemu-user, with libraries from what scripts/sysroot has unpacked.
set(VELDA_ARCH "" CACHE STRING "Debian architecture to build for")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELDA_ARCH)

# architecture, GNU triplet, CMake's name of the processor, qemu's name of it
set(architectures
    "armel arm-linux-gnueabi arm arm"
    "armhf arm-linux-gnueabihf arm arm"
    "arm64 aarch64-linux-gnu aarch64 aarch64"
    "mipsel mipsel-linux-gnu mipsel mipsel"
    "s390x s390x-linux-gnu s390x s390x")
foreach(architecture IN LISTS architectures)
    separate_arguments(architecture)
    list(POP_FRONT architecture name triplet processor emulated)
    if(name STREQUAL VELDA_ARCH)
        set(VELDA_TRIPLET ${triplet})
        set(CMAKE_SYSTEM_PROCESSOR ${processor})
        set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${emulated} -L /usr/${triplet})
    endif()
    list(APPEND names ${name})
endforeach()
if(NOT VELDA_TRIPLET)
    list(JOIN names ", " names)
    message(FATAL_ERROR "VELDA_ARCH is \"${VELDA_ARCH}\"; it has to be one of ${names}.")
endif()

set(CMAKE_SYSTEM_NAME Linux)
set(VELDA_DEBIAN_ARCHITECTURE ${VELDA_ARCH})
set(CMAKE_C_COMPILER ${VELDA_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${VELDA_TRIPLET}-g++)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "arm")
    set(CMAKE_CXX_FLAGS_INIT -Wno-psabi) # remarks on what compilers older than version 7 did
endif()
include(${CMAKE_CURRENT_LIST_DIR}/sysroot.cmake)
