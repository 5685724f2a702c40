#!/usr/bin/env bash
# Whether velda-db-parser needs liblzma and the C library alone.
#   needed.sh <readelf> <program>
# The loader, under whatever name, is part of the C library; on some machines the stack protector's secret is in it.
set -euo pipefail
readelf=$1 program=$2
needed=$("$readelf" -d "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' |
    grep -vE '^ld(-linux|-musl|64)?[^ ]*\.so' | sort)
expected=$'libc.so.6\nliblzma.so.5'
if [ "$needed" != "$expected" ]; then
    printf '%s needs\n%s\ninstead of\n%s\n' "$program" "$needed" "$expected" >&2
    exit 1
fi
