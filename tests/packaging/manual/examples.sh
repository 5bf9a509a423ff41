#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: examples.sh PAGES EXAMPLES
#
# Fails unless each example that the manual pages say to compare is as the file of that name.
status=0
count=0
for page in "$1"/*.[1-9]; do
    for name in $(sed -n 's/^\.\\" A test compares it with packaging\/examples\/\([a-z.]*\)\.$/\1/p' "$page"); do
        count=$((count + 1))
        sed -n "/compares it with packaging.examples.$name\.\$/,/^\.EE/p" "$page" | grep -v '^\.' | sed 's/\\-/-/g' |
            diff - "$2/$name" || { echo "FAILED: ${page##*/} has another $name"; status=1; }
    done
done
[ $count -ge 2 ] || { echo "FAILED: $count examples were compared"; status=1; }
exit $status
