#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: drawings_test.sh TREE
#
# Makes one fault at a time in the texts, the tables and the drawings of a copy, and looks at what the check says. Then
# it looks whether the figures in the drawing of a command's way are those of the sources.
tree=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
failures=0
rows=0

copy() {
    rm -rf "$folder/tree"
    mkdir -p "$folder/tree/scripts/parts" "$folder/tree/docs/images"
    cp "$tree/scripts/check-arrows" "$folder/tree/scripts/"
    cp "$tree/scripts/parts/drawings" "$folder/tree/scripts/parts/"
    cp -r "$tree/docs/drawings" "$folder/tree/docs/"
    for text in "$tree"/docs/drawings/*.txt "$tree"/docs/drawings/*.dot; do
        cp "$tree/docs/images/$(basename "${text%.*}").svg" "$folder/tree/docs/images/"
    done
}

# expect SAYS FILE EDIT: SAYS begins the line that the check says first, or is "" for nothing; EDIT is one for sed.
expect() {
    rows=$((rows + 1))
    copy
    sed -i "$3" "$folder/tree/$2"
    printed=$("$folder/tree/scripts/parts/drawings" --check 2>&1)
    status=$?
    [ $status -ne 77 ] || { echo "$printed"; exit 77; }
    case $status$(echo "$printed" | head -n 1) in
    0) [ -n "$1" ] || return ;;
    "1$1"*) [ -z "$1" ] || return ;;
    esac
    echo "FAILED: $2 after $3: status $status, '$printed' instead of '$1'"
    failures=$((failures + 1))
}
arrows=scripts/check-arrows
expect '' $arrows 's/^base\/files$/&/'
expect 'rooms.awk: there is no box for attic' $arrows 's/^base\/files$/&\nattic Qt/'
expect 'rooms.awk: the table of arrows has no row for libraries/stopwatch' $arrows '/^libraries\/stopwatch/d'
expect 'docs/images/rooms.svg: is not what docs/drawings/rooms.txt says' $arrows 's/^daemon\/server .*/& daemon\/fpga/'
expect 'docs/images/rooms.svg: is not what' $arrows 's/daemon\/buttons\/button_setter\.h libraries/daemon\/buttons libraries/'
expect 'docs/images/rooms.svg: is not what' docs/drawings/rooms.txt 's/the tool for people/the tool/'
expect 'command.awk: cannot be read: main thread' docs/drawings/command.txt '/| Turn /s/|[^|]*$//'
expect 'docs/images/command.svg: is not what docs/drawings/command.txt' docs/drawings/command.txt 's/15 records/16 records/'
expect 'docs/images/threads.svg: is not what docs/drawings/threads.dot' docs/drawings/threads.dot 's/"append"/"appends"/'
expect 'docs/images/threads.svg: is not what docs/drawings/threads.dot' docs/images/threads.svg 's/append/delete/'

copy
rm "$folder/tree/docs/images/rooms.svg"
if ! "$folder/tree/scripts/parts/drawings" >/dev/null ||
    ! cmp "$folder/tree/docs/images/rooms.svg" "$tree/docs/images/rooms.svg"; then
    echo "FAILED: a drawing that is not there is not made"
    failures=$((failures + 1))
fi

# What is drawn, and where it is so, as a pattern of grep. What is counted: `TaskMemoryTest.commands_take_none_*`.
cd "$tree" || exit 2
while IFS='|' read -r drawn file pattern; do
    rows=$((rows + 1))
    grep -qF -e "$drawn" docs/drawings/command.txt && grep -q -e "$pattern" "$file" && continue
    echo "FAILED: '$drawn' is not in docs/drawings/command.txt, or $file has no line '$pattern'"
    failures=$((failures + 1))
done <<'FIGURES'
1 block of;16 KiB for all that arrived|bench/counts/counts.csv|^text_line,[0-9]*,0\.015625,
30 bytes,;kernel to Qt's buffer|docs/protocol.md|^00 00 00 1a  *length = 26$
26 bytes to memory|docs/protocol.md|^00 00 00 1a  *length = 26$
the head's 20 bytes|libraries/protocol/catalogue.h|"BMS_TFTTextLine", 20,
4 KiB at a time|daemon/server/limits.h| frame_window = 4096;
above 256 bytes: 1 block|daemon/buttons/button_setter.h| most_reused = 256;
above 32 bytes: 1 block|daemon/fpga/line_text.h| usual = 32;
15 records;of 16 bytes|tests/daemon/fpga/task_memory_test.cpp|"white line", .* 8 + 6, 1}
14 with one word in the record, 1 with 2048 words|tests/daemon/fpga/task_memory_test.cpp|"white line", .* 8 + 6, 1}
15 records;of 16 bytes|daemon/panel/registers/transfer_record.h|sizeof(TransferRecord) == 16
FIGURES

echo "$rows rows, $failures failures"
[ "$failures" -eq 0 ]
