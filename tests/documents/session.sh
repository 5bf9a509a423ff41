# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What is around the blocks of a page: run_page.py runs it in bash before them. $outputs is a folder of the test.
set -eE
: "${page:?} ${page_file:?} ${outputs:?}"

# failed LINE WHAT: LINE is one of the page, which bash counts as the page does.
failed() {
    echo "FAILED: $page:$1: $2" >&3
    [ ! -s "$outputs/printed" ] || tail -n 15 "$outputs/printed" >&3
    exit 1
}
# A function may have failed that a line of the page has called.
command_failed() {
    local status=$? frame=0
    until [[ ${BASH_SOURCE[frame + 1]} == */steps/[0-9]* || -z ${BASH_SOURCE[frame + 1]} ]]; do
        frame=$((frame + 1))
    done
    failed "${BASH_LINENO[frame]}" "status $status: $(sed -n "${BASH_LINENO[frame]}p" "$page_file")"
}
trap command_failed ERR

succeeded() { failed "${BASH_LINENO[0]}" "has not failed"; }

# has_printed LINE TEXT
has_printed() {
    cat "$outputs/$1"
    grep -qF -e "$2" "$outputs/$1" || failed "$1" "does not print: $2"
}

# Waits for what has no event for a shell; the test's time limit ends it.
poll() { read -r -t 0.01 <>"$outputs/nothing" || true; }

# await_ports PORT...: until the program that was just started listens on all of them.
await_ports() {
    local program=$! port line=${BASH_LINENO[0]}
    for port in "$@"; do
        port=$(printf '%04X' "$port")
        until grep -sq "^ *[0-9]*: [0-9A-F]*:$port [0-9A-F]*:0000 0A " /proc/net/tcp /proc/net/tcp6; do
            kill -0 "$program" 2>/dev/null || failed "$line" "has ended"
            poll
        done
    done
}

# until_it_prints COMMAND...: until it has said something on its standard output; then somebody presses ctrl-C.
until_it_prints() {
    local line=${BASH_LINENO[0]} program status=0
    : >"$outputs/endless"
    set -m
    "$@" >"$outputs/endless" &
    program=$!
    set +m
    until [ -s "$outputs/endless" ]; do
        kill -0 "$program" 2>/dev/null || failed "$line" "has ended"
        poll
    done
    while_it_runs "$@"
    kill -INT -- "-$program"
    wait "$program" || status=$?
    [ "$status" -eq 0 ] || failed "$line" "status $status after ctrl-C"
}
while_it_runs() { :; }

# Of a program that was started and listens nowhere: its number, and the line.
remember() { started+=("$! ${BASH_LINENO[0]}"); }
started=()

# A block that starts programs finds none of those that blocks before it have left running.
end_programs() {
    local programs program line
    for line in "${started[@]}"; do
        program=${line% *}
        kill -0 "$program" 2>/dev/null || wait "$program" || failed "${line#* }" "has ended with status $?"
    done
    started=()
    programs=$(jobs -p)
    # shellcheck disable=SC2086 # several
    [ -z "$programs" ] || { kill $programs 2>/dev/null || true; wait $programs 2>/dev/null || true; }
}

# For a page that takes it that a panel is there.
start_panel() {
    buttondriver-sim --quiet &
    await_ports 3003 8080
}
