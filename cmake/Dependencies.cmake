# liblzma and libcrypto, each only where something that is built calls it.

# A static program takes archives. Only the folders of this project look for them this way.
if(VELDA_STATIC_PIE)
    set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
    set(OPENSSL_USE_STATIC_LIBS ON)
endif()

if(velda_tools)
    find_package(LibLZMA REQUIRED)
elseif("appmngr" IN_LIST velda_libraries)
    include(${PROJECT_SOURCE_DIR}/cmake/LzmaDecoder.cmake)
    if(NOT TARGET LibLZMA::LibLZMA)
        message(FATAL_ERROR "liblzma is missing: install its development files (Debian: liblzma-dev), "
            "or name them with LIBLZMA_INCLUDE_DIR and LIBLZMA_LIBRARY.")
    endif()
endif()
if(velda_container)
    find_package(OpenSSL REQUIRED COMPONENTS Crypto)
endif()
