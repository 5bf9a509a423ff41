#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# scripts/mutate in a small tree of its own: what it reads, what it finds, and what it refuses.
#
#   mutate_test.sh MUTATE
set -eu
mutate=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree/scripts" "$tree/tests/mutations/numbers"
cp "$mutate" "$tree/scripts/mutate"
cd "$tree"

cat >CMakeLists.txt <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(small LANGUAGES CXX)
add_executable(sum_test sum.cpp)
set_target_properties(sum_test PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
CMAKE
cat >sum.cpp <<'CPP'
static int sum(int a, int b) { return a + b; }
static int unused(int a) { return a + 1; }
int main() { return sum(2, 3) == 5 && (false && unused(1)) == 0 ? 0 : 1; }
CPP
git init -q .

# expect STATUS TEXT WORDS...: what scripts/mutate ends with and prints.
expect() {
    wanted_status=$1
    wanted_text=$2
    shift 2
    status=0
    printed=$(scripts/mutate "$@" 2>&1) || status=$?
    if [ "$status" -ne "$wanted_status" ] || ! printf '%s\n' "$printed" | grep -qF -- "$wanted_text"; then
        printf 'mutate %s: status %s, wanted %s and "%s"; printed:\n%s\n' "$*" "$status" "$wanted_status" \
            "$wanted_text" "$printed" >&2
        exit 1
    fi
}

cat >tests/mutations/numbers/arithmetic.txt <<'TABLE'
# A comment.
tests: sum_test

sum.cpp
- return a + b;
+ return a - b;

sum.cpp
- return a + 1;
+ return a + 2;
? nobody calls it
TABLE
git add .
expect 0 "numbers/arithmetic" --list
expect 0 "2 edits, 0 do not fit" --check
expect 0 "2 edits, 0 do not fit" --check numbers
expect 0 "2 edits, 1 noticed (0 of them by the compiler), 1 explained, 0 unnoticed, 0 that do not fit"
expect 2 "there is no room other" other

sed -i '/^? /d' tests/mutations/numbers/arithmetic.txt
expect 1 "numbers/arithmetic.txt:8: sum.cpp: NOTICED BY NO TEST" numbers/arithmetic

printf '\nsum.cpp\n- return a * b;\n+ return 0;\n' >>tests/mutations/numbers/arithmetic.txt
expect 1 "numbers/arithmetic.txt:12: sum.cpp: its text is there 0 times" --check

# What a run broke last is whole in the next one, also where that edits another file.
printf 'tests: sum_test\n\nsum.cpp\n- return a + b;\n+ return a - b;\n' >tests/mutations/numbers/sum.txt
printf 'tests: sum_test\n\nproduct.cpp\n- return a * b;\n+ return 0;\n' >tests/mutations/numbers/product.txt
sed -i 's/sum.cpp/& product.cpp/' CMakeLists.txt
printf 'int product(int a, int b);\nint product(int a, int b) { return a * b; }\n' >product.cpp
git add .
expect 0 "1 edits, 1 noticed" numbers/sum
expect 1 "product.cpp: NOTICED BY NO TEST" numbers/product

sed -i 's/== 5/== 6/' sum.cpp
expect 2 "a test fails in the unbroken tree: sum_test, which ended with 1" numbers/product

printf '\nsum.cpp\nno edit\n' >>tests/mutations/numbers/arithmetic.txt
expect 2 "cannot be read: no edit" --check
