#!/usr/bin/env bash
# Whether the links in Markdown texts lead to files and headings that are there.
#   links.sh <text or folder>...
set -euo pipefail
ls -d -- "$@" >/dev/null
status=0

# The text without code, whose brackets make no links.
prose() {
    awk '/^ *```/ { code = !code; next } !code && !/^(    |\t)/' "$1" | sed 's/`[^`]*`//g'
}

anchors() {
    sed -n 's/^##* //p' "$1" | tr '[:upper:]' '[:lower:]' | sed -e 's/[^a-z0-9 _-]//g' -e 's/ /-/g'
}

while IFS= read -r -d '' text; do
    while IFS= read -r link; do
        file=$(dirname "$text")/${link%%#*}
        if [ -z "${link%%#*}" ]; then
            file=$text
        fi
        if [ ! -e "$file" ]; then
            echo "$text: no file for the link $link" >&2
            status=1
        elif [[ $link == *'#'* ]] && ! anchors "$file" | grep -qxF -- "${link#*#}"; then
            echo "$text: no heading for the link $link" >&2
            status=1
        fi
    done < <(prose "$text" | grep -oE '\]\([^)]*\)' | sed 's/^](\(.*\))$/\1/' | grep -v '^[a-z]*:')
done < <(find "$@" -name '*.md' -print0)
exit $status
