#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Two virtual panels follow what is published at a broker, and one of them comes back to it after a restart. It needs
# mosquitto, mosquitto_pub, buttondriver-sim, buttondriver-mqtt and buttonctl; mosquitto is in /usr/sbin, which is not in
# everybody's PATH. BROKER_PORT names a free port. Exit status: 0 the panels show what they should.
set -eu
PATH=$PATH:/usr/sbin
: "${BROKER_PORT:=1884}"
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
programs=""
# shellcheck disable=SC2317,SC2086 # the trap calls it; a list of numbers
end() {
    [ -z "$programs" ] || kill $programs 2>/dev/null || true
    rm -rf "$work"
}
trap end EXIT
trap 'exit 1' INT TERM

# panel NAME [PORT]: starts a virtual panel, and tells where it is in $daemon and $http.
panel() {
    buttondriver-sim --quiet --port "${2:-0}" --http 0 --log "$work/$1.log" --ports-file "$work/$1.ports" &
    process=$!
    programs="$programs $process"
    until [ -s "$work/$1.ports" ]; do
        kill -0 "$process"
        sleep 0.05
    done
    daemon=$(sed -n 's/^daemon=//p' "$work/$1.ports")
    http=$(sed -n 's/^http=//p' "$work/$1.ports")
}

# shows SCENARIO: waits until the panel that was asked for last shows it.
shows() { buttonctl run "$here/$1.scenario" --port "$daemon" --panel "http://127.0.0.1:$http"; }

# Not by the name localhost, which not every small system knows.
publish() { mosquitto_pub -h 127.0.0.1 -p "$BROKER_PORT" -r "$@"; }

panel hall
hall=$daemon hall_http=$http hall_process=$process
panel yard
yard=$daemon
printf 'listener %s 127.0.0.1\nallow_anonymous true\n' "$BROKER_PORT" >"$work/mosquitto.conf"
mosquitto -c "$work/mosquitto.conf" >"$work/mosquitto.log" 2>&1 &
programs="$programs $!"
sed -e "s/@BROKER@/$BROKER_PORT/" -e "s/@HALL@/$hall/" -e "s/@YARD@/$yard/" "$here/fleet.ini" >"$work/fleet.ini"
buttondriver-mqtt --quiet --config "$work/fleet.ini" &
programs="$programs $!"

# The broker may not listen yet.
tries=0
until publish -t buttondriver/hall/screen/0/line/1 -m "Hello, hall" 2>"$work/publish.log"; do
    tries=$((tries + 1))
    [ "$tries" -lt 400 ] || { cat "$work/publish.log" "$work/mosquitto.log" >&2; exit 1; }
    sleep 0.05
done
publish -t buttondriver/yard/screen/0/line/1 -m "Hello, yard"
publish -t buttondriver/group/doors/led/5 -m "blink 500"
shows yard
daemon=$hall http=$hall_http
shows hall
echo "both panels show what was published"

# A panel that is switched off and on again, at the same address.
kill "$hall_process"
wait "$hall_process" || true
rm "$work/hall.ports"
panel hall "$hall"
shows hall
echo "and so does one that was away"
