#!/usr/bin/env bash
# Packs the Debian packages of a build and looks at what is in them.
#   packages.sh <build> <work> <ON when its libraries are shared>
set -euo pipefail
build=$1 work=$2 shared=$3
here=$(cd "$(dirname "$0")" && pwd)
export LC_ALL=C.UTF-8 SOURCE_DATE_EPOCH=1700000000
status=0

fail() {
    printf '%s\n' "$*" >&2
    status=1
}

# Modes must not depend on those of who packs.
umask 077
rm -rf "$work"
mkdir -p "$work"
cpack --config "$build/CPackConfig.cmake" -B "$work/made" >"$work/log" 2>&1

names=(libvelda-db-dev velda-db-parser velda-dbtool)
if [ "$shared" = ON ]; then
    names+=(libvelda-db0.1)
fi
found=$(printf '%s\n' "$work"/made/*.deb | sed -e 's|.*/||' -e 's/_.*//' | sort | tr '\n' ' ')
if [ "$found" != "$(printf '%s\n' "${names[@]}" | sort | tr '\n' ' ')" ]; then
    fail "packages: $found"
fi

for name in "${names[@]}"; do
    package=$(echo "$work/made/$name"_*.deb)
    root=$work/$name
    doc=$root/usr/share/doc/$name
    dpkg-deb -x "$package" "$root"
    modes=$(dpkg-deb -c "$package" | awk '$1 !~ /^(drwxr-xr-x|-rwxr-xr-x|-rw-r--r--|lrwxrwxrwx)$/')
    [ -z "$modes" ] || fail "$name: modes:" "$modes"
    zcat "$doc/changelog.Debian.gz" | head -n 1 | grep -q "^velda-db-parser ($(dpkg-deb -f "$package" Version))" ||
        fail "$name: its version is not that of changelog.Debian.gz"
    zcat "$doc/changelog.Debian.gz" | grep -q '^ -- .*>  Tue, 14 Nov 2023 22:13:20 +0000$' ||
        fail "$name: not dated as SOURCE_DATE_EPOCH tells"
    grep -q '^Licence: none has been granted yet' "$doc/copyright" || fail "$name: copyright"
    plain=$(find "$root" -path '*/man/*' -type f ! -name '*.gz')
    [ -z "$plain" ] || fail "$name: not compressed: $plain"
    [ "$name" = libvelda-db0.1 ] || [ -s "$doc/examples/small.xml" ] || fail "$name: no samples"
    "$here/links.sh" "$root" || status=1
done

# What a user of the parser gets has no more than it needs.
contents() {
    (cd "$work/$1" && find . -type f ! -path './usr/share/doc/*' | sort)
}
expected='./usr/bin/velda-db-parser
./usr/share/man/man1/velda-db-parser.1.gz'
[ "$(contents velda-db-parser)" = "$expected" ] || fail "velda-db-parser:" "$(contents velda-db-parser)"
if [ "$shared" = OFF ]; then
    needed=$(dpkg-deb -f "$work"/made/velda-db-parser_*.deb Depends | sed 's/ ([^)]*)//g')
    [ "$needed" = "libc6, liblzma5" ] || fail "velda-db-parser depends on $needed"
fi

# A build that is not for /usr has no folder of the architecture for pkg-config's files.
if ! command -v lintian >/dev/null; then
    echo "lintian is not installed; its part is left out"
elif ! lintian --allow-root --fail-on error,warning \
    --suppress-tags pkg-config-unavailable-for-cross-compilation "$work"/made/*.deb >&2; then
    status=1
fi
exit $status
