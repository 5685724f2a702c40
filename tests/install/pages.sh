#!/usr/bin/env bash
# Whether the man pages name this version, tell all functions and show their examples as docs/examples
# has them.
#   pages.sh <version>
set -euo pipefail
version=$1
cd "$(dirname "$0")/../../docs"
status=0

for page in *.[13]; do
    if ! head -n 1 "$page" | grep -q "^\.TH .* \"velda-[a-z-]* $version\""; then
        echo "$page does not name version $version in its first line" >&2
        status=1
    fi
done

# The lines of the section EXAMPLE, as they are printed.
example() {
    sed -n '/^\.SH EXAMPLE/,/^\.EE/p' "$1" | sed -e '/^\.[SE]/d' -e 's/\\e/\\/g' -e 's/\\-/-/g'
}

# Names in bold before that.
named() {
    sed '/^\.SH EXAMPLE/,$d' "$1" |
        grep -oE '\\fB(appmngr|quelm|velda|xmlp|g_xmlp)_[A-Za-z0-9_]+' | sed 's/^...//' | sort -u
}

for page in *.3; do
    library=${page#velda_}
    library=${library%.3}
    diff --label "$page" --label "examples/$library.c" -u \
        <(example "$page") "examples/$library.c" >&2 || status=1
    diff --label "$page" --label "$library.h" -u \
        <(named "$page") <(../tests/install/declared.sh ../*/"$library.h") >&2 || status=1
done
exit $status
