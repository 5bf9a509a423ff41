#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: completion.sh TREE
#
# Fails unless each page of a program tells of the files that complete its command lines, in bash and in zsh, with the place
# that Debian's packages have them in.
status=0
count=0
files=$(sed -nE 's,^(usr/share/bash-completion/[^ ]*)$,/\1,p; s,^usr/share/zsh/[^ ]*(/_[^ ]*) (.*),/\2\1,p' \
    "$1"/debian/*.install)
for file in $files; do
    count=$((count + 1))
    name=${file##*/}
    page=$1/packaging/manual/${name#_}.1
    sed -n '/^\.SH FILES/,/^\.SH [^F]/s/\\-/-/gp' "$page" | grep -qx "\.I $file" ||
        { echo "FAILED: FILES of ${page##*/} does not have $file"; status=1; }
    grep -qx 'In bash and zsh, the tab key completes command lines\.' "$page" ||
        { echo "FAILED: ${page##*/} does not tell of the tab key"; status=1; }
done
[ $count -eq 4 ] || { echo "FAILED: the packages have $count files of completion"; status=1; }
exit $status
