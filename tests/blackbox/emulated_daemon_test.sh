#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: emulated_daemon_test.sh PROGRAMS DAEMON PRELOADS EMULATOR SYSROOT PANEL_ROOT SCENARIO
#
# The daemon of another machine drives the virtual panel of this one, as docs/virtual-panel.md shows it; PROGRAMS is the
# folder of this machine's. The pictures of the scenario were drawn by a daemon of this machine, so that the other one
# has to draw every pixel the same. What only a daemon in the simulator would know is left out.
programs=$1 daemon=$2 preloads=$3 emulator=$4 sysroot=$5 panel_root=$6 scenario=$7
for program in buttondriver-sim buttonctl; do
  [ -x "$programs/$program" ] || { echo "needs this machine's $program in $programs, see scripts/test armhf"; exit 0; }
done
folder=$(mktemp -d) || exit 2
simulator=
driver=
trap 'kill $driver $simulator 2>/dev/null; wait $driver $simulator 2>/dev/null; rm -rf "$folder"' EXIT

mkfifo "$folder/said" || exit 2
"$programs/buttondriver-sim" --http 0 --device "$folder/panel" --snapshot "$folder/panel.png" >"$folder/said" &
simulator=$!
exec 3<"$folder/said"
page=
device=
while [ -z "$page" ] || [ -z "$device" ]; do
  read -r line <&3 || { echo "FAILED: the simulator has ended"; exit 1; }
  case $line in
    *": page on "*) page=${line##* } ;;
    *": device at "*) device=yes ;;
  esac
done
echo "the page is on $page"

"$emulator" -L "$sysroot" -E "LD_PRELOAD=$preloads" -E "BUTTONDRIVER_DEVICE=$folder/panel" \
  -E "BUTTONDRIVER_TEST_ROOT=$panel_root" "$daemon" map 127.0.0.1 0 >"$folder/log" 2>&1 &
driver=$!
# It says nothing when it listens: the system tells the port.
port=
until [ -n "$port" ]; do
  kill -0 $driver || { echo "FAILED: the daemon has ended:"; cat "$folder/log"; exit 1; }
  find "/proc/$driver/fd" -printf '%l\n' | sed -n 's/^socket:\[\(.*\)\]/\1/p' >"$folder/sockets"
  port=$(awk 'NR == FNR { mine[$1]; next } $4 == "0A" && $10 in mine { sub(".*:", "", $2); print $2 }' \
    "$folder/sockets" /proc/net/tcp)
  [ -n "$port" ] || sleep 0.05
done
port=$((0x$port))

cp "${scenario%/*}"/* "$folder" || exit 2
sed -e '/^expect-text/d' -e '/^expect-led .* blinking/d' "$scenario" >"$folder/emulated.scenario"
"$programs/buttonctl" --timeout 60000 --port "$port" run "$folder/emulated.scenario" --panel "${page%/}" || { cat "$folder/log"; exit 1; }

# A picture that differs is told.
cp "$folder/01-first-screen-1.png" "$folder/01-first-screen-0.png"
echo 'expect-screen 0 01-first-screen-0.png --timeout 1' >"$folder/emulated.scenario"
"$programs/buttonctl" --timeout 60000 --port "$port" run "$folder/emulated.scenario" --panel "${page%/}" 2>"$folder/difference"
status=$?
[ $status -eq 3 ] || { echo "FAILED: another picture gave status $status"; exit 1; }
