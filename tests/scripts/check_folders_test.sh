#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: check_folders_test.sh CHECK_FOLDERS
#
# Fills a folder of a tree of its own with files, and looks at what the check prints.
check_folders=$1
tree=$(mktemp -d) || exit 2
trap 'rm -rf "$tree"' EXIT
failures=0

# expect STATUS OUTPUT
expect() {
    printed=$("$check_folders" "$tree" 2>&1)
    status=$?
    if [ "$printed" != "$2" ] || [ "$status" -ne "$1" ]; then
        echo "FAILED: status $status, printed '$printed' instead of '$2'"
        failures=$((failures + 1))
    fi
}

# fill FOLDER NUMBER
fill() {
    mkdir -p "$tree/$1"
    for number in $(seq "$2"); do
        : >"$tree/$1/$number"
    done
}

expect 2 "check-folders: no files in $tree"
fill . 15
expect 0 ""
# What lies deeper does not count, and neither does what a build leaves.
fill room/part 15
fill room 15
fill build/qt6 40
expect 0 ""
fill room 16
expect 1 "room: 16 files, at most 15"
fill room 15
fill . 16
rm "$tree/room/16"
expect 1 ".: 16 files, at most 15"

# In a clone, files that git is told to ignore do not count; new ones do.
if command -v git >/dev/null; then
    rm -r "$tree/16" "$tree/build"
    git init -q "$tree"
    expect 0 ""
    fill room/ignored 16
    echo /room/ignored/ >"$tree/.git/info/exclude"
    expect 0 ""
    fill room/part 17
    expect 1 "room/part: 17 files, at most 15"
fi

[ "$failures" -eq 0 ]
