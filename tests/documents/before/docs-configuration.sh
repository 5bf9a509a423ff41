# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0

# The tool for faults finds none in the file of the levels.
levels_are_in_order() {
    cp -rL build/qt6/share/buttondriver/panel-root root
    cp buttonlevel root/etc/rv1000e/buttonlevel
    buttonctl --port 1 doctor --root root --virtual | grep '^ok *levels: .*/root/etc/rv1000e/buttonlevel$'
}
