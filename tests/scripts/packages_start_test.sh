#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: packages_start_test.sh POSTINST
#
# What the daemon's package asks udev and systemd when it is configured, and that it never fails because of them.
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
fail() { echo "FAILED: $1"; exit 1; }
mkdir "$folder/bin"
# shellcheck disable=SC2016 # for the script to fill in
sed 's/^#DEBHELPER#$/echo "account and unit" >>"$record"/' "$1" >"$folder/postinst"
shell=$(command -v sh)

# stub PROGRAM END: tells how it was called, and ends as END says.
stub() {
    # shellcheck disable=SC2016 # for the program to fill in
    printf '#!%s\necho "${0##*/} $*" >>"$record"\n%s\n' "$shell" "$2" >"$folder/bin/$1"
    chmod +x "$folder/bin/$1"
}
# programs UDEV DEVICE: how udev ends, and with which status systemd says whether the device is there.
programs() {
    stub udevadm "$1"
    stub systemctl "exit $2"
}
# expect WHAT ARGUMENT...: the script with these arguments ends well, and what it has asked is standard input.
expect() {
    what=$1
    shift
    cat >"$folder/expected"
    : >"$folder/record"
    record=$folder/record DPKG_ROOT=$root PATH=$folder/bin "$shell" "$folder/postinst" "$@" >"$folder/said" 2>&1 ||
        fail "$what: status $?: $(cat "$folder/said")"
    [ ! -s "$folder/said" ] || fail "$what: $(cat "$folder/said")"
    diff "$folder/expected" "$folder/record" || fail "$what"
}

root=
stub deb-systemd-invoke 'exit 1'
programs 'exit 0' 0
expect "the device is there" configure <<'END'
account and unit
udevadm control --reload
udevadm trigger --settle --sysname-match=fpga-reg
systemctl --quiet is-active dev-fpga\x2dreg.device
deb-systemd-invoke start buttondriver.service
END
# shellcheck disable=SC2016 # for the program to fill in
programs '[ "$1" = control ]' 3
expect "there is no device, and udev does not do it" configure 0.1.0 <<'END'
account and unit
udevadm control --reload
udevadm trigger --settle --sysname-match=fpga-reg
systemctl --quiet is-active dev-fpga\x2dreg.device
END
programs 'exit 1' 1
expect "neither udev nor systemd runs" configure <<'END'
account and unit
udevadm control --reload
systemctl --quiet is-active dev-fpga\x2dreg.device
END
programs 'exit 0' 0
rm "$folder/bin/udevadm"
expect "there is no udev" configure <<'END'
account and unit
END
programs 'exit 0' 0
expect "something else has happened" triggered <<'END'
account and unit
END
root=/elsewhere
expect "the root is another one" configure <<'END'
account and unit
END
