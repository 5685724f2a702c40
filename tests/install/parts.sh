#!/usr/bin/env bash
# Whether parts can be had alone: what is left out is not looked for, not built and not installed.
#   parts.sh <source> <work> <cc> <c++> <small image>
set -euo pipefail
source=$1 work=$2 cc=$3 cxx=$4 image=$5
rm -rf "$work"
mkdir -p "$work"

# make <name> <option>...: what gets installed, without documents, into $work/<name>.list
make() {
    local name=$1
    shift
    cmake -S "$source" -B "$work/$name" -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" \
        -DCMAKE_INSTALL_LIBDIR=lib -DVELDA_WARNINGS_AS_ERRORS=ON "$@" >"$work/$name.log" 2>&1 &&
        cmake --build "$work/$name" --parallel 2 >>"$work/$name.log" 2>&1 &&
        cmake --install "$work/$name" --prefix "$work/$name/prefix" >>"$work/$name.log" 2>&1 || {
        cat "$work/$name.log" >&2
        exit 1
    }
    (cd "$work/$name/prefix" && find . ! -type d | sed 's|^\./||' | sort) >"$work/$name.list"
}

expect() { # <name>, and the list on standard input
    diff --label expected --label "$1" -u - "$work/$1.list" >&2
}

not=-DCMAKE_DISABLE_FIND_PACKAGE_ # what is asked for all the same ends the configuration

make parser -DVELDA_LIBRARIES= -DVELDA_BUILD_TOOLS=OFF -DBUILD_TESTING=OFF ${not}OpenSSL=ON ${not}LibLZMA=ON \
    -DVELDA_INSTALL_DOCS=OFF -DVELDA_STATIC_PIE=ON
expect parser <<<bin/velda-db-parser
"$work/parser/prefix/bin/velda-db-parser" "$image" "$work/list"

make xmlp -DVELDA_LIBRARIES=xmlp -DVELDA_BUILD_PROGRAMS=OFF -DVELDA_BUILD_TOOLS=OFF -DBUILD_TESTING=OFF \
    ${not}OpenSSL=ON ${not}LibLZMA=ON -DLIBLZMA_LIBRARY=nowhere -DVELDA_INSTALL_DOCS=OFF
expect xmlp <<'END_OF_LIST'
include/velda-db/xmlp/xmlp.h
lib/cmake/velda-db/LzmaDecoder.cmake
lib/cmake/velda-db/velda-db-config-version.cmake
lib/cmake/velda-db/velda-db-config.cmake
lib/cmake/velda-db/velda-db-targets-release.cmake
lib/cmake/velda-db/velda-db-targets.cmake
lib/libvelda_xmlp.a
lib/pkgconfig/velda-xmlp.pc
END_OF_LIST

make tool -DVELDA_BUILD_CONTAINER=OFF -DVELDA_BUILD_PROGRAMS=OFF -DVELDA_LIBRARIES= -DBUILD_TESTING=OFF \
    ${not}OpenSSL=ON
grep -qx bin/velda-dbtool "$work/tool.list"
tool=$work/tool/prefix/bin/velda-dbtool
"$tool" list "$image" >"$work/list"
if "$tool" seal "$image" "$work/sealed" 2>"$work/refusal"; then
    echo "a tool without containers makes one" >&2
    exit 1
fi
grep -q "built without containers" "$work/refusal"

# Another project gets libraries, and nothing that it did not ask for.
mkdir "$work/around"
cat >"$work/around/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(around LANGUAGES C CXX)
add_subdirectory("$source" velda)
foreach(target velda-db-parser velda-dbtool samples tool_test)
    if(TARGET \${target})
        message(FATAL_ERROR "\${target} was not asked for")
    endif()
endforeach()
END
CC=$cc CXX=$cxx cmake -S "$work/around" -B "$work/around/build" >"$work/around.log" 2>&1 || {
    cat "$work/around.log" >&2
    exit 1
}
