# How every target of this project is compiled and linked.

set(VELDA_WARNINGS
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wcast-qual -Wcast-align
    -Wformat=2 -Wundef -Wswitch-enum -Wvla
    $<$<BOOL:${VELDA_WARNINGS_AS_ERRORS}>:-Werror>)

set(VELDA_CXX_WARNINGS -Wold-style-cast -Wextra-semi -Wnon-virtual-dtor -Wzero-as-null-pointer-constant)

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
    target_compile_options(${target} PRIVATE ${VELDA_WARNINGS}
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

function(velda_harden target)
    if(NOT VELDA_HARDEN OR VELDA_SANITIZE OR VELDA_COVERAGE OR CMAKE_BUILD_TYPE STREQUAL "Debug")
        return()
    endif()
    target_compile_options(${target} PRIVATE
        -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong -fstack-clash-protection)
    target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now -Wl,-z,noexecstack)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
        target_link_options(${target} PRIVATE -pie)
    endif()
endfunction()

# The same bytes in whatever folder it is built. Where a debugger or gcov looks for the sources, their
# true places stay.
function(velda_reproducible target)
    if(NOT VELDA_COVERAGE)
        target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:
            -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=./build>)
    endif()
    set_target_properties(${target} PROPERTIES BUILD_RPATH_USE_ORIGIN ON)
endfunction()

# The product itself: no exceptions, no RTTI, nothing from the C++ run-time library. --as-needed
# keeps the C++ driver's default libraries out of a program that calls nothing in them, and what a
# processor without an instruction for it calls, a division say, is linked in.
function(velda_product_target target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    target_compile_options(${target} PRIVATE
        $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics>
        -Wnull-dereference)
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
function(velda_add_library name)
    set(target velda_${name})
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
    endif()
    velda_product_target(${target})
endfunction()

function(velda_add_program name)
    add_executable(${name} ${ARGN})
    velda_product_target(${name})
endfunction()
