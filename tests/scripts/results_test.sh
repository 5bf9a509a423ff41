#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: results_test.sh RESULTS_AWK
#
# One test of each way to end, as ctest writes them down, and what is noted of them.
results=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
cat >"$folder/results.xml" <<'XML'
<?xml version="1.0" encoding="UTF-8"?>
<testsuite name="Linux-c++"
	tests="7"
	>
	<testcase name="room.passes" classname="room.passes" time="0.25" status="run">
		<system-out>/room_test.cpp:6: Skipped
only here</system-out>
	</testcase>
	<testcase name="room.fails" classname="room.fails" time="12" status="fail">
		<failure message=""/>
		<system-out>needs nothing</system-out>
	</testcase>
	<testcase name="room.has_no_program" classname="room.has_no_program" time="0" status="notrun">
		<skipped message="Unable to find executable: room_test"/>
		<system-out></system-out>
	</testcase>
	<testcase name="room.has_no_fixture" classname="room.has_no_fixture" time="0" status="notrun">
		<skipped message="Fixture dependency failed"/>
		<system-out></system-out>
	</testcase>
	<testcase name="room.is_skipped" classname="room.is_skipped" time="0.5" status="notrun">
		<skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>
		<system-out>Running main() from gtest_main.cc
Note: Google Test filter = Room.is_skipped
[ RUN      ] Room.is_skipped
/room_test.cpp:6: Skipped
needs &quot;root&quot; &amp; more
[  SKIPPED ] Room.is_skipped (0 ms)
[  PASSED  ] 0 tests.
</system-out>
	</testcase>
	<testcase name="web.live" classname="web.live" time="0.01" status="notrun">
		<skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>
		<system-out>needs Node.js
</system-out>
	</testcase>
	<testcase name="room.is_off" classname="room.is_off" time="0" status="disabled">
		<system-out></system-out>
	</testcase>
</testsuite>
XML
failures=0

# expect WHAT WANTED GOT
expect() {
    [ "$2" = "$3" ] && return
    printf 'FAILED: %s:\n%s\ninstead of:\n%s\n' "$1" "$3" "$2"
    failures=$((failures + 1))
}

echo "asan: before" >"$folder/failed"
expect counts "1 3" "$(awk -v preset=qt6 -v notes="$folder" -f "$results" "$folder/results.xml")"
expect failed "asan: before
qt6: room.fails
qt6: room.has_no_program
qt6: room.has_no_fixture" "$(cat "$folder/failed")"
expect skipped 'qt6: room.is_skipped: needs "root" & more
qt6: web.live: needs Node.js
qt6: room.is_off: is disabled' "$(cat "$folder/skipped")"
expect slowest "12 qt6 room.fails" "$(sort -rn "$folder/times" | head -n 1)"
[ "$failures" -eq 0 ]
