# How every target of this project is compiled and linked.

include(CheckCCompilerFlag)
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)

# velda_supported_flags(<variable> <C|CXX|LINK> <flag>...): those of the flags that the compiler, or the
# linker, takes for this processor without a word. Thumb-1 knows no -fstack-clash-protection, say.
function(velda_supported_flags variable kind)
    set(CMAKE_REQUIRED_QUIET ON)
    set(supported)
    foreach(flag IN LISTS ARGN)
        string(MAKE_C_IDENTIFIER "VELDA_HAS_${kind}${flag}" known)
        set(CMAKE_REQUIRED_FLAGS -Werror)
        if(kind STREQUAL "C")
            check_c_compiler_flag(${flag} ${known})
        elseif(kind STREQUAL "CXX")
            check_cxx_compiler_flag(${flag} ${known})
        else()
            check_linker_flag(CXX ${flag} ${known})
        endif()
        if(${known})
            list(APPEND supported ${flag})
        endif()
    endforeach()
    set(${variable} ${supported} PARENT_SCOPE)
endfunction()

set(warnings
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wcast-qual -Wcast-align
    -Wformat=2 -Wundef -Wswitch-enum -Wvla)
velda_supported_flags(VELDA_C_WARNINGS C ${warnings})
velda_supported_flags(VELDA_CXX_WARNINGS CXX ${warnings}
    -Wold-style-cast -Wextra-semi -Wnon-virtual-dtor -Wzero-as-null-pointer-constant)
velda_supported_flags(VELDA_PRODUCT_WARNINGS CXX -Wnull-dereference)
if(VELDA_WARNINGS_AS_ERRORS)
    list(APPEND VELDA_C_WARNINGS -Werror)
    list(APPEND VELDA_CXX_WARNINGS -Werror)
endif()

# Headers that the build makes.
set(VELDA_GENERATED ${PROJECT_BINARY_DIR}/include)

# While the major number is 0, each minor number is an interface of its own.
set(VELDA_SOVERSION ${PROJECT_VERSION_MAJOR})
if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(VELDA_SOVERSION 0.${PROJECT_VERSION_MINOR})
endif()

# Archives without dates and owners, whatever the binutils were built to do by default.
foreach(language C CXX)
    set(CMAKE_${language}_ARCHIVE_CREATE "<CMAKE_AR> qcD <TARGET> <LINK_FLAGS> <OBJECTS>")
    set(CMAKE_${language}_ARCHIVE_APPEND "<CMAKE_AR> qD <TARGET> <LINK_FLAGS> <OBJECTS>")
    set(CMAKE_${language}_ARCHIVE_FINISH "<CMAKE_RANLIB> -D <TARGET>")
endforeach()

# Options that must reach everything linked into one program, tests included.
function(velda_instrument target)
    target_compile_options(${target} PRIVATE
        $<$<COMPILE_LANGUAGE:C>:${VELDA_C_WARNINGS}>
        $<$<COMPILE_LANGUAGE:CXX>:${VELDA_CXX_WARNINGS}>)
    if(VELDA_SANITIZE)
        set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all)
        target_compile_options(${target} PRIVATE ${sanitizers} -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE ${sanitizers})
    endif()
    if(VELDA_FUZZ)
        # Not -fsanitize=fuzzer-no-link: following comparisons too would take most of the time.
        target_compile_options(${target} PRIVATE
            -fsanitize-coverage=inline-8bit-counters,indirect-calls,pc-table)
    endif()
    if(VELDA_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage)
        target_link_options(${target} PRIVATE --coverage)
    endif()
endfunction()

if(VELDA_HARDEN)
    velda_supported_flags(VELDA_HARDENING CXX -fstack-protector-strong -fstack-clash-protection)
    velda_supported_flags(VELDA_LINK_HARDENING LINK
        -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

    # What the C library checks needs an optimised build, and most versions of glibc warn of any other
    # one in every file. The kind of build does not tell: a builder may have set its flags to -O0.
    block()
        set(CMAKE_REQUIRED_QUIET ON)
        set(CMAKE_TRY_COMPILE_CONFIGURATION ${CMAKE_BUILD_TYPE})
        if(CMAKE_CONFIGURATION_TYPES)
            set(CMAKE_TRY_COMPILE_CONFIGURATION Release)
        endif()
        check_cxx_source_compiles("
            #ifndef __OPTIMIZE__
            #error not optimised
            #endif
            int main() { return 0; }" VELDA_OPTIMISES)
    endblock()
    if(VELDA_OPTIMISES)
        list(APPEND VELDA_HARDENING -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    endif()
endif()

function(velda_harden target)
    if(NOT VELDA_HARDEN OR VELDA_SANITIZE OR VELDA_COVERAGE)
        return()
    endif()
    target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:${VELDA_HARDENING}>)
    target_link_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:${VELDA_LINK_HARDENING}>)
endfunction()

# Programs are position independent, the static ones too.
set(VELDA_PIE_LINKING)
if(VELDA_STATIC_PIE)
    velda_supported_flags(VELDA_PIE_LINKING LINK -static-pie)
    if(NOT VELDA_PIE_LINKING)
        message(FATAL_ERROR "VELDA_STATIC_PIE: this compiler links no static PIE; without the option "
            "programs are linked with shared libraries.")
    endif()
elseif(VELDA_HARDEN AND NOT VELDA_SANITIZE AND NOT VELDA_COVERAGE)
    velda_supported_flags(VELDA_PIE_LINKING LINK -pie)
endif()

# The same bytes in whatever folder it is built. Where a debugger or gcov looks for the sources, their
# true places stay.
function(velda_reproducible target)
    if(NOT VELDA_COVERAGE)
        target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:
            -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=./build>)
    endif()
    set_target_properties(${target} PROPERTIES BUILD_RPATH_USE_ORIGIN ON)
endfunction()

# Threads of a device have small stacks: no function of a library takes 4 KiB and more by itself.
# Unoptimised code and what sanitizers add would.
if(CMAKE_BUILD_TYPE MATCHES "^(Release|MinSizeRel)$" AND NOT VELDA_SANITIZE AND NOT VELDA_COVERAGE)
    velda_supported_flags(VELDA_FRAME_WARNING CXX -Wframe-larger-than=4096)
endif()

# The product itself: no exceptions, no RTTI, nothing from the C++ run-time library. --as-needed
# keeps the C++ driver's default libraries out of a program that calls nothing in them, and what a
# processor without an instruction for it calls, a division say, is linked in.
function(velda_product_target target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    target_compile_options(${target} PRIVATE
        $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics>
        ${VELDA_PRODUCT_WARNINGS})
    if(CMAKE_SIZEOF_VOID_P EQUAL 4) # files of 2 GiB and more open there too
        target_compile_definitions(${target} PRIVATE _FILE_OFFSET_BITS=64)
    endif()
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_link_options(${target} PRIVATE -Wl,--as-needed -static-libgcc)
    velda_instrument(${target})
    velda_harden(${target})
    velda_reproducible(${target})
endfunction()

# velda_add_library(<name> <source>...): the library velda_<name>, alias velda::<name>, with the public
# header <name>.h. Headers are included as "<room>/<header>", from the project's root.
#
# velda_inside_<name> is always a static library of the same objects: for velda-db-parser, which needs
# none of this project's shared libraries, and for tests, which call what those do not show.
function(velda_add_library name)
    set(target velda_${name})
    set(inside velda_inside_${name})
    add_library(${target} ${ARGN})
    add_library(velda::${name} ALIAS ${target})
    target_sources(${target} PUBLIC FILE_SET HEADERS
        BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${CMAKE_CURRENT_SOURCE_DIR}/${name}.h)
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${name}
        VERSION ${PROJECT_VERSION} SOVERSION ${VELDA_SOVERSION})
    if(BUILD_SHARED_LIBS)
        set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
        target_link_options(${target} PRIVATE -Wl,--version-script=${exports})
        set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports})
        add_library(${inside} STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:${target}>)
        target_include_directories(${inside} PUBLIC ${PROJECT_SOURCE_DIR} ${VELDA_GENERATED})
        set_target_properties(${inside} PROPERTIES LINKER_LANGUAGE CXX)
    else()
        add_library(${inside} ALIAS ${target})
    endif()
    velda_product_target(${target})
    target_compile_options(${target} PRIVATE ${VELDA_FRAME_WARNING})
endfunction()

# velda_link_library(<name> [PUBLIC <library>...] [PRIVATE <library>...])
function(velda_link_library name)
    target_link_libraries(velda_${name} ${ARGN})
    if(BUILD_SHARED_LIBS)
        list(TRANSFORM ARGN REPLACE "^velda::" velda_inside_)
        target_link_libraries(velda_inside_${name} ${ARGN})
    endif()
endfunction()

function(velda_add_program name)
    add_executable(${name} ${ARGN})
    velda_product_target(${name})
    target_link_options(${name} PRIVATE ${VELDA_PIE_LINKING})
endfunction()
