#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: manual_options.sh PAGE PROGRAM
#
# Fails unless the manual page has the same long options as the program's help, no more and no less.
page=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
options() { grep -oE -e '--[a-z][a-z-]*' | sort -u; }
"$2" --help >"$folder/help" || { echo "FAILED: exit status $?"; exit 1; }
grep -E '^ +(-[a-zA-Z], )?--' "$folder/help" | options >"$folder/expected"
sed 's/\\-/-/g' "$page" | options >"$folder/written"
[ -s "$folder/expected" ] || { echo "FAILED: the help has no options"; exit 1; }
diff "$folder/expected" "$folder/written" || { echo "FAILED: the page differs from the help"; exit 1; }
