#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: packages_pages_test.sh TREE
#
# Each relative link of the pages in buttondriver-doc leads to a file of that package, and to a heading if it names one.
tree=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
cd "$tree" || exit 2
pages=usr/share/doc/buttondriver
mkdir -p "$folder/$pages" || exit 2
# What is installed by CMake is docs/ there; the rest comes from the tree.
grep -v '^#' debian/buttondriver-doc.install | while read -r source target; do
    case $source in "$pages"/*) target=$pages source=docs/${source#"$pages"/} ;; esac
    mkdir -p "$folder/$target"
    # shellcheck disable=SC2086 # a pattern
    cp -r $source "$folder/$target" || echo "FAILED: there is no $source"
done >"$folder/faults"
"$tree/scripts/packages/pages" "$folder/$pages" || exit 1

cd "$folder/$pages" || exit 2
# Headings as a reader of Markdown names them: small letters, digits and hyphens.
headings() {
    # shellcheck disable=SC2016 # Markdown
    sed -n '/^```/,/^```/d; s/^##* //p' "$1" | LC_ALL=C tr '[:upper:] ' '[:lower:]-' | LC_ALL=C sed 's/[^a-z0-9_-]//g'
}
find . -name '*.md' | sort >"$folder/pages"
while read -r page; do
    # Links may go over the end of a line; what is code has none.
    # shellcheck disable=SC2016 # Markdown
    sed '/^```/,/^```/d; s/`[^`]*`//g' "$page" | tr '\n' ' ' | grep -o '\](\([^)]*\))' | sed 's/^](//; s/)$//' |
        grep -v '^[a-z]*://' >"$folder/links"
    while read -r link; do
        echo "$link" >>"$folder/all"
        file=${link%%#*}
        file=$(dirname "$page")/${file:-$(basename "$page")}
        [ -e "$file" ] || { echo "FAILED: ${page#./} has a link to $link"; continue; }
        case $link in
        *'#'*) headings "$file" | grep -qx -e "${link#*#}" || echo "FAILED: ${page#./}: no such heading: $link" ;;
        esac
    done <"$folder/links"
done <"$folder/pages" >>"$folder/faults"
cat "$folder/faults"
[ ! -s "$folder/faults" ] || exit 1
echo "$(wc -l <"$folder/all") links of $(wc -l <"$folder/pages") pages"
[ "$(wc -l <"$folder/all")" -gt 100 ] || { echo "FAILED: there are more"; exit 1; }
