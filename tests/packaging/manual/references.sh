#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: references.sh TREE
#
# Fails unless each manual page of the tree has the title and the section that its file name has; unless what one page
# says of another leads to a page with that section; unless each is listed under SEE ALSO by all others; and unless one
# package has it, and each unit names one of its own component.
folder=$1/packaging/manual
status=0
fail() { echo "FAILED: $1"; status=1; }

# "NAME SECTION" of each reference in the page $1, or in its last section with SEE ALSO for $2.
references() {
    sed -e 's/\\%//g' -e 's/\\-/-/g' "$1" |
        sed -n "${2:+/^\.SH $2/,\$}s/^\.BR \([^ ]*\) (\([1-9]\)).*/\1 \2/p"
}

count=0
for page in "$folder"/*.[1-9]; do
    count=$((count + 1))
    file=${page##*/}
    name=${file%.*}
    section=${file##*.}
    title=$(echo "$name" | tr '[:lower:]' '[:upper:]')
    grep -q "^\.TH $title $section " "$page" || fail "$file has another title: $(grep '^\.TH' "$page")"
    for other in "$folder"/*.[1-9]; do
        references "$other" | grep "^$name " | grep -qvx "$name $section" && fail "${other##*/} has $name in another section"
        [ "$other" = "$page" ] || references "$other" 'SEE ALSO' | grep -qx "$name $section" ||
            fail "${other##*/} does not list $file under SEE ALSO"
    done
    references "$page" 'SEE ALSO' | while read -r other_name other_section; do
        # Pages of other projects have other names.
        case $other_name in button* | launcher*) ;; *) continue ;; esac
        [ -f "$folder/$other_name.$other_section" ] || echo "$file: no page $other_name.$other_section"
    done | grep . && fail "$file refers to pages that are not there"
    # Some of CMake's components are a package as a whole; what is in the others is sorted by these files.
    component=$(sed -n "s/^ *install_manual(\([a-z]*\) .*\<$file\>.*/\1/p" "$1/packaging/CMakeLists.txt")
    whole=$(grep -c "install_component,$component," "$1/debian/rules")
    sorted=$(cat "$1"/debian/*.install | grep -cFx "usr/share/man/man$section/$file")
    [ $((whole + sorted)) -eq 1 ] || fail "$file, of component '$component', is in $((whole + sorted)) packages"
done
[ $count -ge 6 ] || fail "there are $count pages"

for unit in "$1"/packaging/systemd/*.service.in; do
    name=$(basename "$unit" .service.in)
    component=$(sed -n "s/^ *packaged_unit($name \([a-z]*\))/\1/p" "$1/packaging/CMakeLists.txt")
    page=$(sed -n 's/^Documentation=man:\([^ (]*\)(\(.\)).*/\1.\2/p' "$unit")
    grep -q "^ *install_manual($component .*\<$page\>" "$1/packaging/CMakeLists.txt" ||
        fail "the unit $name, of component '$component', names '$page'"
done
exit $status
