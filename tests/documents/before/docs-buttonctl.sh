# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# A client of the recording.
while_it_runs() {
    case $* in
    *record*) buttonctl --port 3004 ping >/dev/null ;;
    esac
}

# This machine has neither a panel nor its account.
buttonctl() {
    local status=0
    command buttonctl "$@" || status=$?
    case "$* $status" in 'doctor 1' | 'doctor --user buttondriver 2') ;; *) return "$status" ;; esac
}
sudo() { "$@"; }

# The panels and files that the examples take to be there.
start_panel
buttondriver-sim --port 3005 --http 8081 &
await_ports 3005 8081

buttonctl screenshot photo.png --screen 0
python3 - <<'PICTURE'
import struct, zlib

def chunk(name: bytes, data: bytes) -> bytes:
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))

header = struct.pack(">2I5B", 40, 24, 1, 0, 0, 0, 0)
rows = zlib.compress(b"\0\xff\0\xff\0\xff" * 24)
with open("arrow.png", "wb") as file:
    file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", rows) + chunk(b"IEND", b""))
PICTURE
cp arrow.png logo.bmp
head -c 120 /dev/zero >arrow.raw
echo 'led 5 off' >start.txt

mkdir tests scenarios
cp examples/scenarios/* scenarios/
echo 'expect-screen 0 first.png' >first.scenario
buttonctl screenshot first.png --screen 0
for name in start stop one tests/one; do printf 'led 5 on\nexpect-led 5 on\n' >"$name.scenario"; done
printf '#!/bin/sh\nexec sleep 60\n' >my-client
chmod +x my-client
