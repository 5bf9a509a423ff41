#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: quick_run_test.sh PROGRAM FOLDER
#
# A quick run of the latency program measures every row for every load and both devices, loses nothing, and writes its
# files. FOLDER is for those.
program=$1
cd "$2" || exit 2
rm -f quick.csv quick.svg quick.md
"$program" --quick --csv quick.csv --svg quick.svg >quick.md || { echo "FAILED: exit status $?"; exit 1; }

person="open_command first_answer new_command ping blink_period blink_step"
faults=0
expect_rows() { # TRANSFER_SECONDS LOAD ROW...
  transfer_seconds=$1
  load=$2
  shift 2
  for row; do
    # Count and missing ones are the last two of its columns.
    grep -qE "^$transfer_seconds,$load,,$row,[0-9.e+-]+,[0-9.e+-]+,[1-9][0-9]*,0\$" quick.csv && continue
    echo "FAILED: $row under load $load, transfers of $transfer_seconds s"
    faults=$((faults + 1))
  done
}
for transfer_seconds in 0.0001 0; do
  # shellcheck disable=SC2086 # several words
  expect_rows "$transfer_seconds" idle $person
done
for load in picture pictures text texts; do
  # shellcheck disable=SC2086
  expect_rows 0.0001 "$load" $person busy_share message_rate
  # shellcheck disable=SC2086
  expect_rows 0 "$load" $person message_rate
done

rows_of_table=$(grep -c '^| .* |.* |.* |' quick.md)
[ "$rows_of_table" -eq 74 ] || { echo "FAILED: $rows_of_table lines of the tables, 74 expected"; faults=$((faults + 1)); }
tail -n 1 quick.svg | grep -q '^</svg>$' || { echo "FAILED: the plot is not complete"; faults=$((faults + 1)); }
[ "$faults" -eq 0 ]
