#!/usr/bin/env bash
# Installs a build into an empty folder, and builds and runs programs against what is there: by CMake
# from C and C++, and by pkg-config.
#   consume.sh <build> <work> <image> <cc> <c++> <ON when its libraries are shared>
set -euo pipefail
build=$1 work=$2 image=$3 cc=$4 cxx=$5 shared=$6
here=$(cd "$(dirname "$0")" && pwd)
examples=$here/../../docs/examples
prefix=$work/prefix

rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$prefix" >"$work/install.log"

expect() { # <program> <text that it has to print>
    local printed
    printed=$("$1")
    if [ "$printed" != "$2" ]; then
        printf '%s printed\n%s\ninstead of\n%s\n' "$1" "$printed" "$2" >&2
        exit 1
    fi
}

expectResults() { # <folder of programs>
    expect "$1/use-common" $'tcp is 6\nUDP is 17'
    expect "$1/use-xmlp" "<config><host>router</host><port>53</port></config>"
    expect "$1/use-quelm" "4a20dd93da641555d4ac1331c190a8ed sixteen bytes..."
    "$1/use-appmngr" "$image" "$work/list" 2>"$work/reports"
    "$prefix/bin/velda-db-parser" "$image" "$work/list-of-tool"
    cmp "$work/list" "$work/list-of-tool"
}

byCMake() { # <source> <folder>
    CC=$cc CXX=$cxx cmake -S "$1" -B "$2" -DCMAKE_PREFIX_PATH="$prefix" >"$2.log"
    cmake --build "$2" >>"$2.log"
}
byCMake "$examples" "$work/c"
expectResults "$work/c"
byCMake "$here/cpp" "$work/cpp"
"$work/cpp/use-all" >"$work/cpp.out"
grep -q ' d4 \[ERROR\]\[.*: no xml tag found' "$work/cpp.out"

pc=$(find "$prefix" -name pkgconfig)
export PKG_CONFIG_PATH=$pc
linking=(--static)
if [ "$shared" = ON ]; then
    linking=()
    export LD_LIBRARY_PATH=${pc%/pkgconfig}
fi
mkdir "$work/pc"
for library in common xmlp quelm appmngr; do
    read -ra flags <<<"$(pkg-config --cflags --libs "${linking[@]}" "velda-$library")"
    "$cc" -std=c11 -Wall -Wextra -Wpedantic -Werror "$examples/$library.c" "${flags[@]}" \
        -o "$work/pc/use-$library"
done
expectResults "$work/pc"
