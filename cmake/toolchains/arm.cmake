# 32-bit ARM with hardware floating point; what is built runs under qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(VELDA_DEBIAN_ARCHITECTURE armhf)
set(VELDA_TRIPLET arm-linux-gnueabihf)
set(CMAKE_C_COMPILER ${VELDA_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${VELDA_TRIPLET}-g++)
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi) # remarks on what compilers older than version 7 did
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L /usr/${VELDA_TRIPLET})
include(${CMAKE_CURRENT_LIST_DIR}/sysroot.cmake)
