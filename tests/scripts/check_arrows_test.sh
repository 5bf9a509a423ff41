#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: check_arrows_test.sh CHECK_ARROWS
#
# Puts one include at a time into a tree of its own, and looks at what the check says to it.
check_arrows=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
failures=0
rows=0

# expect SAYS FILE INCLUDE: SAYS is the line expected, or "nothing".
expect() {
  rows=$((rows + 1))
  tree=$folder/$rows
  mkdir -p "$tree/base/bytes" "$tree/$(dirname "$2")"
  echo '#include <vector>' >"$tree/base/bytes/innocent.h"
  printf '#pragma once\n\n#include %s\n' "$3" >"$tree/$2"
  printed=$("$check_arrows" "$tree" 2>&1)
  status=$?
  if [ "$1" = nothing ]; then
    expected=
    expected_status=0
  else
    expected=$1
    expected_status=1
  fi
  if [ "$printed" != "$expected" ] || [ "$status" -ne "$expected_status" ]; then
    echo "FAILED: $2 with #include $3: status $status, printed '$printed' instead of '$expected'"
    failures=$((failures + 1))
  fi
}

# Down the arrows, sideways within a room, and out to libraries.
expect nothing daemon/app/a.cpp '"server/connector.h"'
expect nothing daemon/app/a.cpp '"fpga/fpga.h"'
expect nothing daemon/buttons/a.cpp '"fpga/fpga.h"'
expect nothing daemon/fpga/a.cpp '"panel/text.h"'
expect nothing daemon/server/a.cpp '"buttons/button_setter.h"'
expect nothing daemon/server/a.cpp '"protocol/encoders.h"'
expect nothing daemon/server/a.h '<QTcpSocket>'
expect nothing libraries/protocol/a.h '"../bytes/byte_view.h"'
expect nothing libraries/protocol/encoders.h '<QByteArray>'
expect nothing libraries/protocol/encoders.cpp '"protocol/converters.h"'
expect nothing libraries/protocol/records.h '"catalogue.h"'
expect nothing daemon/panel/a.h '"panel/registers/registers.h"'
expect nothing daemon/panel/a.h '<ft2build.h>'
expect nothing daemon/panel/a.cpp '"logging/standard_output.h"'
expect nothing daemon/panel/registers/ioctl_register_device.cpp '<sys/ioctl.h>'
expect nothing simulator/stand_in/a.cpp '"panel/registers/transfer_record.h"'
expect nothing simulator/stand_in/a.cpp '"simulator/device_link/device_protocol.h"'
expect nothing tests/daemon/server/a.cpp '<sys/ioctl.h>'
expect nothing build/moc/a.cpp '<sys/ioctl.h>'

# What stands in for the device needs nothing but headers without a run time.
expect 'simulator/stand_in/a.cpp:3: must not include logging/standard_output.h' simulator/stand_in/a.cpp '"logging/standard_output.h"'
expect 'simulator/stand_in/a.cpp:3: must not include simulator/device_link/device_socket.h' simulator/stand_in/a.cpp '"simulator/device_link/device_socket.h"'
expect 'simulator/stand_in/a.cpp:3: must not include sys/ioctl.h' simulator/stand_in/a.cpp '<sys/ioctl.h>'

# Up the arrows.
expect 'daemon/panel/a.h:3: must not include fpga/fpga.h' daemon/panel/a.h '"fpga/fpga.h"'
expect 'daemon/fpga/a.cpp:3: must not include buttons/button.h' daemon/fpga/a.cpp '"buttons/button.h"'
expect 'daemon/buttons/a.cpp:3: must not include server/connector.h' daemon/buttons/a.cpp '"server/connector.h"'
expect 'daemon/server/a.h:3: must not include app/daemon.h' daemon/server/a.h '"app/daemon.h"'
expect 'daemon/server/a.h:3: must not include fpga/fpga.h' daemon/server/a.h '"fpga/fpga.h"'
expect 'daemon/server/a.h:3: must not include buttons/button.h' daemon/server/a.h '"buttons/button.h"'
expect 'daemon/server/a.h:3: must not include buttons/button_setter_impl.h' daemon/server/a.h '"buttons/button_setter_impl.h"'
expect 'libraries/protocol/a.h:3: must not include server/connector.h' libraries/protocol/a.h '"server/connector.h"'
expect 'libraries/protocol/decode.h:3: must not include protocol/encoders.h' libraries/protocol/decode.h '"protocol/encoders.h"'
expect 'libraries/protocol/decode.h:3: must not include encoders.h' libraries/protocol/decode.h '"encoders.h"'
expect 'daemon/app/a.cpp:3: must not include simulator/options.h' daemon/app/a.cpp '"simulator/options.h"'

# Rooms without Qt, and without headers that need it.
expect 'daemon/panel/a.h:3: must not include QString' daemon/panel/a.h '<QString>'
expect 'daemon/panel/a.h:3: must not include QtCore/QString' daemon/panel/a.h '<QtCore/QString>'
expect 'daemon/panel/a.cpp:3: must not include logging/log_line.h' daemon/panel/a.cpp '"logging/log_line.h"'
expect 'libraries/protocol/catalogue.h:3: must not include QtGlobal' libraries/protocol/catalogue.h '<QtGlobal>'
expect 'libraries/stopwatch/a.h:3: must not include QElapsedTimer' libraries/stopwatch/a.h '<QElapsedTimer>'
expect 'base/bytes/a.h:3: must not include QByteArray' base/bytes/a.h '<QByteArray>'
expect 'base/files/a.h:3: must not include QString' base/files/a.h '<QString>'
expect 'libraries/event_client/event_client.h:3: must not include QTcpSocket' libraries/event_client/event_client.h '<QTcpSocket>'

# Also from an installed header, which has no root to start from.
expect 'libraries/protocol/a.h:3: must not include ../buttons/button.h' libraries/protocol/a.h '"../buttons/button.h"'

# One door to the hardware.
expect 'daemon/panel/a.cpp:3: must not include sys/ioctl.h' daemon/panel/a.cpp '<sys/ioctl.h>'
expect 'daemon/fpga/a.cpp:3: must not include sys/ioctl.h' daemon/fpga/a.cpp '<sys/ioctl.h>'

expect 'attic/a.cpp: its room is not in the table of arrows' attic/a.cpp '<vector>'

# expect_circle SAYS FILE INCLUDE FILE INCLUDE: SAYS is the line expected, or "nothing", for a tree with two includes.
expect_circle() {
  rows=$((rows + 1))
  tree=$folder/$rows
  mkdir -p "$tree/$(dirname "$2")" "$tree/$(dirname "$4")"
  echo "#include \"$3\"" >"$tree/$2"
  echo "#include \"$5\"" >"$tree/$4"
  found=$("$check_arrows" "$tree" 2>&1)
  [ "$1" = nothing ] && [ -z "$found" ] && return
  # A circle is named from where it was met first.
  [ -n "$found" ] && [ "$(echo "$found" | tr ' ' '\n' | sort -u)" = "$(echo "$1" | tr ' ' '\n' | sort -u)" ] && return
  echo "FAILED: $2 with #include $3 and $4 with $5: '$found' instead of '$1'"
  failures=$((failures + 1))
}

# In a circle, of files of one room, and of rooms.
expect_circle 'circle: daemon/fpga/a daemon/fpga/b daemon/fpga/a' daemon/fpga/a.h 'fpga/b.h' daemon/fpga/b.h 'fpga/a.h'
expect_circle 'circle: daemon/fpga/a daemon/fpga/b daemon/fpga/a' daemon/fpga/a.h 'fpga/b.h' daemon/fpga/b.cpp 'fpga/a.h'
expect_circle 'circle: buttonctl/ buttonctl/documents/ buttonctl/' buttonctl/runner.cpp 'buttonctl/documents/a.h' \
  buttonctl/documents/b.cpp 'buttonctl/command_table.h'
expect_circle nothing daemon/fpga/a.h 'fpga/b.h' daemon/fpga/c.h 'fpga/b.h'
expect_circle nothing daemon/fpga/a.cpp 'fpga/a.h' daemon/fpga/b.h 'fpga/a.h'

mkdir "$folder/empty"
"$check_arrows" "$folder/empty" >/dev/null 2>&1
if [ $? -ne 2 ]; then
  echo "FAILED: a folder without sources is not reported as one"
  failures=$((failures + 1))
fi

echo "$rows includes tried, $failures failures"
[ "$failures" -eq 0 ]
