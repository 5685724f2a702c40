#!/usr/bin/env bash
# What a library shows to those who link it.
#   symbols.sh <nm> <library> <public header>
# A shared library has to show exactly what its public header declares. In a static one, where the
# linker takes its parts together, names of inner functions are seen too, and have to be such that no
# user's name meets them: with the library's prefix, in its namespace, or with a leading underscore.
set -euo pipefail
nm=$1 library=$2 header=$3

case $library in
*.a)
    strangers=$("$nm" --extern-only --defined-only "$library" | awk 'NF == 3 && $2 !~ /[VWu]/ { print $3 }' |
        grep -vE '^(appmngr|quelm|velda|xmlp|g_appmngr|g_xmlp|_ZNK?5velda|_[a-z_])' || true)
    if [ -n "$strangers" ]; then
        printf '%s defines names that are not its own:\n%s\n' "$library" "$strangers" >&2
        exit 1
    fi
    ;;
*)
    diff --label "$header" --label "$library" -u <("$(dirname "$0")/declared.sh" "$header") \
        <("$nm" -D --defined-only "$library" | awk '{ print $NF }' | sed 's/@.*//' | sort -u) >&2
    ;;
esac
