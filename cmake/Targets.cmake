# How every target of this project is compiled and linked.

set(VELDA_WARNINGS
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wcast-qual -Wcast-align
    -Wformat=2 -Wundef -Wswitch-enum -Wvla
    $<$<BOOL:${VELDA_WARNINGS_AS_ERRORS}>:-Werror>)

set(VELDA_CXX_WARNINGS -Wold-style-cast -Wextra-semi -Wnon-virtual-dtor -Wzero-as-null-pointer-constant)

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

# The product itself: no exceptions, no RTTI, nothing from the C++ run-time library. --as-needed
# keeps the C++ driver's default libraries out of a program that calls nothing in them, and what a
# processor without an instruction for it calls, a division say, is linked in.
function(velda_product_target target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_compile_options(${target} PRIVATE
        $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics>
        -Wnull-dereference)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4) # files of 2 GiB and more open there too
        target_compile_definitions(${target} PRIVATE _FILE_OFFSET_BITS=64)
    endif()
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        POSITION_INDEPENDENT_CODE ON)
    target_link_options(${target} PRIVATE -Wl,--as-needed -static-libgcc)
    velda_instrument(${target})
    velda_harden(${target})
endfunction()

# velda_add_library(<room> <source>...): the library velda_<room>, alias velda::<room>. Headers are
# included as "<room>/<header>", from the project's root.
function(velda_add_library room)
    set(target velda_${room})
    add_library(${target} ${ARGN})
    add_library(velda::${room} ALIAS ${target})
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    velda_product_target(${target})
endfunction()

function(velda_add_program name)
    add_executable(${name} ${ARGN})
    velda_product_target(${name})
endfunction()
