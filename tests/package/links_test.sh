#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: links_test.sh FOLDER [LIST]
#
# Each relative link of the pages that are installed in FOLDER leads to a file that is installed too, and to a heading
# if it names one. The examples that the pages name are there; what a run of one writes is not.
# LIST: what Debian's package takes from FOLDER; each folder in it stands there.
list=${2:+$(grep -v '^#' "$2")} || exit 2
cd "$1" || exit 2
notes=$(mktemp -d) || exit 2
trap 'rm -rf "$notes"' EXIT
# Headings as a reader of Markdown names them: small letters, digits and hyphens.
headings() {
    # shellcheck disable=SC2016 # Markdown
    sed -n '/^```/,/^```/d; s/^##* //p' "$1" | LC_ALL=C tr '[:upper:] ' '[:lower:]-' | LC_ALL=C sed 's/[^a-z0-9_-]//g'
}
find . -name '*.md' | sort >"$notes/pages"
while read -r page; do
    # Links may go over the end of a line; what is code has none.
    # shellcheck disable=SC2016 # Markdown
    sed '/^```/,/^```/d; s/`[^`]*`//g' "$page" | tr '\n' ' ' | grep -o '\](\([^)]*\))' | sed 's/^](//; s/)$//' |
        grep -v '^[a-z]*://' >"$notes/links"
    while read -r link; do
        echo "$link" >>"$notes/all"
        file=${link%%#*}
        file=$(dirname "$page")/${file:-$(basename "$page")}
        [ -e "$file" ] || { echo "FAILED: ${page#./} has a link to $link"; continue; }
        case $link in
        *'#'*) headings "$file" | grep -qx -e "${link#*#}" || echo "FAILED: ${page#./}: no such heading: $link" ;;
        esac
    done <"$notes/links"
    grep -oE '(^|[ `])examples/[0-9a-z][A-Za-z0-9_./-]*' "$page" | tr -d ' `' |
        sed 's/\.$//; /results\.xml$/d; /failures\/$/d' >"$notes/examples"
    while read -r example; do
        echo "$example" >>"$notes/named"
        [ -e "$example" ] || echo "FAILED: ${page#./} names $example"
    done <"$notes/examples"
done <"$notes/pages" >"$notes/faults"
for folder in ${list:+*/}; do
    echo "$list" | grep -q "/${folder%/}\(/\*/\)\{0,1\}\$" || echo "FAILED: Debian's package has no $folder"
done >>"$notes/faults"
cat "$notes/faults"
[ ! -s "$notes/faults" ] || exit 1
echo "$(wc -l <"$notes/all") links of $(wc -l <"$notes/pages") pages, $(wc -l <"$notes/named") names of examples"
if [ "$(wc -l <"$notes/all")" -lt 100 ] || [ "$(wc -l <"$notes/named")" -lt 3 ]; then
    echo "FAILED: there are more"
    exit 1
fi
