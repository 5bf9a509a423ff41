#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: check_format_test.sh CHECK_FORMAT
#
# Lets the check look at one file after the other.
check_format=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
cp "$(dirname "$0")/../../.clang-format" "$folder" || exit 2
cd "$folder" || exit 2
failures=0
rows=0
licence='SPDX-License-Identifier: Apache-2.0'

# expect STATUS PATTERN FILE LINES: PATTERN is in what is printed; "nothing" stands for no output at all.
expect() {
    rows=$((rows + 1))
    mkdir -p "$(dirname "$3")"
    printf '%b' "$4" >"$3"
    printed=$("$check_format" "$3" 2>&1)
    status=$?
    is_as_expected=no
    if [ "$2" = nothing ]; then
        [ -n "$printed" ] || is_as_expected=yes
    else
        ! printf '%s\n' "$printed" | grep -q -e "$2" || is_as_expected=yes
    fi
    if [ $is_as_expected = no ] || [ "$status" -ne "$1" ]; then
        echo "FAILED: $3 with '$4': status $status, printed '$printed' instead of '$2'"
        failures=$((failures + 1))
    fi
}

expect 0 nothing fine.cpp "// $licence\nint one();\n"
expect 0 nothing third.h "// one\n// two\n// $licence\n"
expect 0 nothing fine.sh "#!/bin/sh\n# $licence\n"
expect 0 nothing notes.md "nothing\n"
expect 0 nothing fine.css "/* $licence */\n"

expect 1 'spaces.cpp:2:.*clang-format' spaces.cpp "// $licence\nint  one();\n"
expect 1 'braces.h:.*clang-format' braces.h "// $licence\nstruct A\n{\n  int one;\n};\n"
expect 1 'plain.c:.*clang-format' plain.c "// $licence\nint one(void)   ;\n"
expect 1 "^late.h: must say \"$licence\"" late.h "// one\n// two\n// three\n// $licence\n"
for file in nameless.h nameless.c nameless.cpp; do
    expect 1 "^$file: must say" "$file" "int one(void);\n"
done
for file in a.js a.mjs a.css a.sh a.cmake a.lua a.py a.awk CMakeLists.txt Makefile scripts/run .ci/run; do
    expect 1 "^$file: must say" "$file" "nothing\n"
done

# A file after one that is fine, and one before.
printf '// %s\n' "$licence" >fine.h
echo 'int one();' >nameless.h
for pair in "fine.h nameless.h" "nameless.h fine.h"; do
    rows=$((rows + 1))
    # shellcheck disable=SC2086 # two names
    [ "$("$check_format" $pair 2>&1)" = "nameless.h: must say \"$licence\" in one of its first three lines" ] || {
        echo "FAILED: $pair"
        failures=$((failures + 1))
    }
done

echo "$rows tried, $failures failures"
[ "$failures" -eq 0 ]
