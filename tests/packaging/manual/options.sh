#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: options.sh PAGE PROGRAM
#
# Fails unless the section OPTIONS of the manual page has the same options as the program's help, no more and no less.
page=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
options() { grep -oE -e '(^|[ ,"])--?[a-zA-Z][a-z-]*' | tr -d ' ,"' | sort -u; }
"$2" --help >"$folder/help" || { echo "FAILED: exit status $?"; exit 1; }
grep -E '^ +(-[a-zA-Z], )?--' "$folder/help" | sed -E 's/^ +//; s/  .*//' | options >"$folder/expected"
sed -n '/^\.SH OPTIONS/,/^\.SH [^O]/p' "$page" | sed 's/\\-/-/g' | grep -A 1 '^\.TP' | options >"$folder/written"
[ -s "$folder/expected" ] || { echo "FAILED: the help has no options"; exit 1; }
diff "$folder/expected" "$folder/written" || { echo "FAILED: the page differs from the help"; exit 1; }
