# What a builder can choose. Everything that only serves this project's own development is off when
# the project is entered with add_subdirectory from another one.
option(BUILD_SHARED_LIBS "Build the libraries as shared objects" OFF)
option(VELDA_BUILD_TESTS "Build the tests and pack the sample databases" ${PROJECT_IS_TOP_LEVEL})
option(VELDA_INSTALL "Install programs, libraries, headers and man pages" ${PROJECT_IS_TOP_LEVEL})
option(VELDA_BUILD_BENCH "Build the benchmarks, which need further libraries (./dev bench)" OFF)
option(VELDA_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" ${PROJECT_IS_TOP_LEVEL})
option(VELDA_HARDEN "Build position independent, with RELRO and run-time checks" ON)
option(VELDA_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(VELDA_FUZZ "Build the fuzz targets with libFuzzer (clang++, with VELDA_SANITIZE)" OFF)
option(VELDA_COVERAGE "Build with coverage counters" OFF)

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()
