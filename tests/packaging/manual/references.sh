#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: manual_sections.sh FOLDER RULES
#
# Fails unless each manual page of the folder has the section that its file name has, unless the others refer to it with
# that section, and unless the rules of the packages install it.
status=0
fail() { echo "FAILED: $1"; status=1; }
for page in "$1"/*; do
    file=${page##*/}
    name=${file%.*}
    section=${file##*.}
    title=$(echo "$name" | tr '[:lower:]' '[:upper:]')
    grep -q "^\.TH $title $section " "$page" || fail "$file has another title: $(grep '^\.TH' "$page")"
    sed -n "s/^\.BR $name (\([0-9]\)).*/\1/p" "$1"/* | grep -vx "$section" && fail "others look for $name in that section"
    grep -q " packaging/manual/$file\$" "$2" || fail "no package has $file"
done
[ -n "$section" ] || fail "there are no pages"
exit $status
