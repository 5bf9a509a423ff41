#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: rendering.sh man|mandoc|lexgrog PROGRAM PAGE
#
# Shows the manual page, or has it checked; fails when the program has something to say about it. lexgrog must find the
# name and the line that apropos shows.
LC_ALL=C.UTF-8
MANWIDTH=80
export LC_ALL MANWIDTH
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
file=${3##*/}
case $1 in
    man)
        # Where a page of a printer would end depends on the width.
        for MANWIDTH in 72 100 132 80; do
            "$2" --warnings=w -E UTF-8 -l "$3" >"$folder/page" 2>>"$folder/words" || break
        done ;;
    mandoc) "$2" -T lint -W warning "$3" >"$folder/words" 2>&1 && echo NAME >"$folder/page" ;;
    lexgrog) "$2" "$3" 2>"$folder/words" | grep -qF "\"${file%.*} - " && echo NAME >"$folder/page" ;;
esac || { echo "FAILED: exit status $?"; cat "$folder/words"; exit 1; }
[ ! -s "$folder/words" ] || { echo "FAILED:"; cat "$folder/words"; exit 1; }
grep -q NAME "$folder/page" || { echo "FAILED: there is no page"; exit 1; }
# Nothing is wider than a terminal. Not every awk knows characters of several bytes.
width=$(wc -L <"$folder/page")
[ "$width" -le 80 ] || { echo "FAILED: it is $width columns wide"; exit 1; }
