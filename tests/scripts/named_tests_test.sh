#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: named_tests_test.sh TREE
#
# The documents name tests as proof, such as `TaskQueueTest.reports_each_mark_*`. Each of them has to exist.
cd "$1" || exit 2
# shellcheck disable=SC2016 # the quotes of Markdown
names=$(grep -ohE '`[A-Z][A-Za-z]+Test\.[a-z][a-z_0-9]*\*?`' README.md docs/*.md docs/*/*.md | tr -d '`' | sort -u)
if [ -z "$names" ]; then
  echo "FAILED: the documents name no test"
  exit 1
fi
missing=0
for name in $names; do
  # "*" stands for the rest of a name.
  pattern="TEST(_F|_P)?\\(${name%%.*}, *$(echo "${name#*.}" | sed 's/\*$/[a-z_0-9]*/')\\)"
  grep -rqE --include='*_test.cpp' "$pattern" tests && continue
  echo "FAILED: there is no test $name"
  missing=$((missing + 1))
done
echo "$(echo "$names" | wc -l) tests named, $missing missing"
[ "$missing" -eq 0 ]
