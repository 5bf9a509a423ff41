# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0

# What the page says that a line of text does to the device, compared with the recording.
transfers_are_these() {
    local before
    buttondriver-sim --record recorded &
    await_ports 3003 8080
    echo 'expect-intensity 63' | buttonctl run -
    before=$(wc -l <recorded)
    printf '%s\n' 'text 0 2 Ready' 'expect-text 0 2 Ready' | buttonctl run -
    tail -n "+$((before + 1))" recorded | sed 's/^[0-9]* //; s/^\(w 0a03 2048\) .*/\1 .../' >seen
    sed 's/   .*//' transfers | diff - seen
}
