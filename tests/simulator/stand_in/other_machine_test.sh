#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: other_machine_test.sh TREE SIMULATOR COMPILER EMULATOR
#
# Builds what stands in for the device, and a program that uses it, for a 32-bit machine, and has the program drive the
# simulator of this one. With times of 32 and of 64 bits: then some functions have other names.
tree=$1 simulator=$2 compiler=$3 emulator=$4
if [ ! -x "$compiler" ] || [ ! -x "$emulator" ]; then
  echo "needs g++-arm-linux-gnueabihf and qemu-user"
  exit 0
fi
folder=$(mktemp -d) || exit 2
process=
trap 'kill $process 2>/dev/null; wait $process 2>/dev/null; rm -rf "$folder"' EXIT
cd "$folder" || exit 2
system=/usr/arm-linux-gnueabihf

"$compiler" -std=c++17 -shared -fPIC -O2 -Wall -Wextra -Werror -fno-exceptions -fno-rtti -fvisibility=hidden \
  -I"$tree" -I"$tree/daemon" -I"$tree/base" "$tree"/simulator/stand_in/*.cpp -o stand-in.so -Wl,--as-needed || exit 1

mkfifo said || exit 2
"$simulator" --http off --device panel --record record >said 2>simulator-errors &
process=$!
exec 3<said
read -r line <&3
[ "$line" = "buttondriver-sim: device at panel" ] || { echo "FAILED: the simulator said '$line'"; exit 1; }

failures=0
for times in "" "-D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64"; do
  # shellcheck disable=SC2086 # several options, or none
  "${compiler%g++}gcc" -O2 -D_FORTIFY_SOURCE=2 $times "$tree/tests/simulator/stand_in/device_user.c" -o user || exit 1
  : >printed
  "$emulator" -L "$system" -E "LD_PRELOAD=$folder/stand-in.so" -E "BUTTONDRIVER_DEVICE=$folder/panel" \
    ./user fortified w:900:6500 w:123:1111,2222 r:123:2 many:65536 threads close openat w:900:4500 >printed 2>&1
  cat >expected <<'TEXT'
fortified: done
w:900:6500: done
w:123:1111,2222: done
2222 2222 r:123:2: done
many:65536: -1 errno 22
threads: done
close: done
openat: done
w:900:4500: done
TEXT
  diff expected printed || failures=1
  printf '%s\n' 'w 0900 1 6500' 'w 0123 2 1111 2222' 'r 0123 2 2222 2222' 'w 0900 1 4500' >expected
  sed 's/^[0-9]* //' record | grep -E ' 0(900|123) ' | tail -n 4 | diff expected - || failures=1
done
exit $failures
