# 32-bit ARM with musl in place of glibc; programs are static PIEs. scripts/musl brings what this looks
# for. The compiler is the one for glibc: its folders are put aside (-nostdinc, and musl.specs for the
# linker), and of its C++ run-time library the headers alone are used.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(VELDA_DEBIAN_ARCHITECTURE armhf)
set(VELDA_TRIPLET arm-linux-gnueabihf)
set(CMAKE_C_COMPILER ${VELDA_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${VELDA_TRIPLET}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm)

set(VELDA_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot/musl-armhf)
cmake_path(ABSOLUTE_PATH VELDA_SYSROOT NORMALIZE)
set(CMAKE_FIND_ROOT_PATH ${VELDA_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# scripts/musl has written the flags there, for liblzma's own build too.
foreach(language C CXX)
    file(READ ${VELDA_SYSROOT}/flags.${language} CMAKE_${language}_FLAGS_INIT)
    string(STRIP "${CMAKE_${language}_FLAGS_INIT}" CMAKE_${language}_FLAGS_INIT)
endforeach()
