#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: quick_run_test.sh PROGRAM FOLDER
#
# A quick run of the program that measures the bridge with many panels loses nothing, whatever comes and goes, and
# measures every row of both sides. FOLDER is for its files.
program=$1
cd "$2" || exit 2
rm -f fleet.csv fleet.md
"$program" --quick --csv fleet.csv >fleet.md || { echo "FAILED: exit status $?"; cat fleet.md; exit 1; }

faults=0
for row in steady,median steady,p99 steady,longest steady,receiver steady,broker memory,panel; do
  for side in ours theirs; do
    grep -qE "^$row,$side,1,[0-9.e+-]+\$" fleet.csv && continue
    echo "FAILED: $row of $side"
    faults=$((faults + 1))
  done
done
# What happens, the commands meanwhile, the time, and nobody who is wrong.
disturbances=$(grep -cE '^\| .* \| (0|1000) \| [0-9.]+ s \| 0 \|$' fleet.md)
[ "$disturbances" -eq 4 ] || { echo "FAILED: $disturbances disturbances, 4 expected"; faults=$((faults + 1)); }
[ "$faults" -eq 0 ]
