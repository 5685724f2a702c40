#!/bin/sh
# list.sh IMAGE LIST: the list of applications with the tools of a shell.
tail -c +6 "$1" | xz -dc --format=lzma |
    xmlstarlet sel -T -t -v /AppDB/ver -n -m /AppDB/appList/app -v id -o : -v name -n >"$2"
