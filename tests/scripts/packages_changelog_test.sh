#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: packages_changelog_test.sh CHANGELOG_SCRIPT VERSION
#
# What becomes of a list of changes with a version that is not released and one that is, and of one with a fault; and
# that the packages of this tree have this version.
script=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
fail() { echo "FAILED: $1"; exit 1; }

cat >"$folder/changes" <<'MD'
# Changes

What is above the versions is not taken, not even
- points.

## 0.2.0, not released yet

Says something.

### The tools

- `buttonctl` has a command, described in [a page](docs/page.md) whose name is long enough to make this
  go over the end of a line.
- A second point.

## 0.1.0, 2026-03-04

- The first version.
MD
cat >"$folder/expected" <<'DEB'
buttondriver (0.2.0~pre20260102.030405) bookworm; urgency=medium

  * Says something.

  [ The tools ]
  * buttonctl has a command, described in a page whose name is long enough to
    make this go over the end of a line.
  * A second point.

 -- buttondriver developers <buttondriver@example.org>  Fri, 02 Jan 2026 03:04:05 +0000

buttondriver (0.1.0) bookworm; urgency=medium

  * The first version.

 -- buttondriver developers <buttondriver@example.org>  Wed, 04 Mar 2026 00:00:00 +0000

DEB
# 2026-01-02 03:04:05 UTC, and elsewhere another day.
TZ=Pacific/Kiritimati "$script" "$folder/changes" 1767323045 >"$folder/made" || fail "ends with status $?"
diff "$folder/expected" "$folder/made" || fail "see above"

echo "## 0.3.0, some day" >"$folder/faulty"
! "$script" "$folder/faulty" 1767323045 >/dev/null 2>"$folder/said" || fail "takes a version without a date"
grep -q 'neither a date nor "not released yet": ## 0.3.0, some day$' "$folder/said" || fail "said: $(cat "$folder/said")"

newest=$("$script" "$(dirname "$script")/../../CHANGELOG.md" 1767323045 | sed -n '1s/^buttondriver (\([^)~]*\).*/\1/p')
[ "$newest" = "$2" ] || fail "the packages would have version '$newest', and this is '$2'"
