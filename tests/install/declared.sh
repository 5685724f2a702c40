#!/usr/bin/env bash
# The names of functions and variables that a public header declares.
#   declared.sh <header>
set -euo pipefail
sed -e 's|/\*.*\*/||' -e '/\/\*/,/\*\//d' -e '/^#/d' "$1" |
    grep -oE '\b(appmngr|quelm|velda|xmlp)_[A-Za-z0-9_]+\(|\bg_xmlp_[A-Za-z0-9_]+;' |
    tr -d '(;' | sort -u
