# 32-bit x86. An x86-64 machine runs it itself, so to CMake, which is not told another system's name,
# this is no cross build.
set(VELDA_DEBIAN_ARCHITECTURE i386)
set(VELDA_TRIPLET i386-linux-gnu)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_FLAGS_INIT -m32)
set(CMAKE_CXX_FLAGS_INIT -m32)
include(${CMAKE_CURRENT_LIST_DIR}/sysroot.cmake)
