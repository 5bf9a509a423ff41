#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: yardsticks_quick_run_test.sh PROGRAM FOLDER
#
# A quick run of the yardsticks measures every row of both sides and writes its page, its values and its plots. How fast
# anything was is not looked at. FOLDER is for the files.
program=$1
cd "$2" || exit 2
rm -f yardsticks.md yardsticks.csv yardsticks-times.svg yardsticks-ratios.svg
"$program" --quick --csv yardsticks.csv --svg yardsticks >yardsticks.md || { echo "FAILED: exit status $?"; exit 1; }

faults=0
fail() {
  echo "FAILED: $1"
  faults=$((faults + 1))
}
expect_rows() { # GROUP RUNS ROW...
  group=$1
  runs=$2
  shift 2
  for row; do
    for side in ours theirs; do
      # A number above 0: some digit of it is not 0.
      values=$(grep -cE "^$group,$row,$side,[0-9]+,[0-9.]*[1-9][0-9.e+-]*\$" yardsticks.csv)
      [ "$values" -eq "$runs" ] || fail "$group, $row, $side: $values values, $runs expected"
    done
  done
}
expect_rows messages 5 status_led text_line picture ping ping_99 \
  status_led_gathered text_line_gathered picture_gathered ping_gathered ping_99_gathered
expect_rows connections 5 status_led text_line
expect_rows drawing 5 text_line text_line_freetype picture picture_conversion
expect_rows processes 1 start idle_memory connection_memory

lines=$(wc -l <yardsticks.csv)
[ "$lines" -eq 167 ] || fail "$lines lines of values, 167 expected"
rows=$(grep -c '^| [a-z].* |.* |.* |.* |.* |.* |$' yardsticks.md)
[ "$rows" -eq 19 ] || fail "$rows rows of the tables, 19 expected"
headings=$(grep -c '^## ' yardsticks.md)
[ "$headings" -eq 5 ] || fail "$headings headings, 5 expected"
grep -q '^[0-9]* processors (.*), Linux .*\. Built by .*, with Qt [56]\.' yardsticks.md || fail "the machine is not told"
grep -Eq 'nan|inf[^o]' yardsticks.md && fail "something is no number"
for plot in times ratios; do
  tail -n 1 "yardsticks-$plot.svg" | grep -q '^</svg>$' || fail "the plot of the $plot is not complete"
done
[ "$faults" -eq 0 ]
