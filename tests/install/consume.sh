#!/usr/bin/env bash
# Installs a build into an empty folder, and builds and runs programs against what is there: by CMake
# from C and C++, and by pkg-config. Then uninstalls it.
#   consume.sh <build> <work> <image> <cc> <c++> <ON when its libraries are shared>
set -euo pipefail
build=$1 work=$2 image=$3 cc=$4 cxx=$5 shared=$6
here=$(cd "$(dirname "$0")" && pwd)
prefix="$work/wo es hingehört"
examples=$prefix/share/doc/velda-db-parser/examples

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

configure() { # <source> <folder> [option...]
    CC=$cc CXX=$cxx cmake -S "$1" -B "$2" -DCMAKE_PREFIX_PATH="$prefix" "${@:3}" >"$2.log" 2>&1
}
byCMake() { # <source> <folder>
    configure "$1" "$2"
    cmake --build "$2" >>"$2.log"
}
byCMake "$examples" "$work/c"
expectResults "$work/c"
byCMake "$here/cpp" "$work/cpp"
"$work/cpp/use-all" >"$work/cpp.out"
grep -q ' d4 \[ERROR\]\[.*: no xml tag found' "$work/cpp.out"

# A component that there is not is named, and beside it those that there are.
if configure "$here/cpp" "$work/wrong" -DCOMPONENT=nonsense ||
    ! tr -s '\n ' ' ' <"$work/wrong.log" | grep -qF '"nonsense" here; there are: common, xmlp, quelm, appmngr.'; then
    echo "a component that does not exist:" >&2
    cat "$work/wrong.log" >&2
    exit 1
fi

# What pkg-config tells is quoted for a shell.
compile() { # <option or source>... -- <option of pkg-config>...
    local own=()
    while [ "$1" != -- ]; do
        own+=("$1")
        shift
    done
    local flags
    flags=$(pkg-config "${@:2}")
    eval "\"\$cc\" -std=c11 -Wall -Wextra -Wpedantic -Werror \"\${own[@]}\" $flags"
}
pc=$(find "$prefix" -name pkgconfig)
export PKG_CONFIG_PATH=$pc
linking=(--static)
run_path=()
if [ "$shared" = ON ]; then
    linking=()
    run_path=("-Wl,-rpath,${pc%/pkgconfig}")
fi
mkdir "$work/pc"
for library in common xmlp quelm appmngr; do
    compile "$examples/$library.c" -o "$work/pc/use-$library" "${run_path[@]}" -- \
        --cflags --libs "${linking[@]}" "velda-$library"
done
expectResults "$work/pc"

# With the include folder alone and headers of the same names in front, as a firmware tree has them.
compile -I "$here/firmware" -I "$prefix/include" "$here/firmware/main.c" -o "$work/pc/firmware" \
    "${run_path[@]}" -- --libs "${linking[@]}" velda-appmngr velda-quelm
expect "$work/pc/firmware" "firmware $("$prefix/bin/velda-dbtool" --version | awk '{ print $NF }')"

"$here/links.sh" "$prefix"

# As README tells it.
tr '\n' '\0' <"$build/install_manifest.txt" | xargs -0 rm --
left=$(find "$prefix" ! -type d)
if [ -n "$left" ]; then
    printf 'not uninstalled:\n%s\n' "$left" >&2
    exit 1
fi
