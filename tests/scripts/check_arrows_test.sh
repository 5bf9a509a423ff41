#!/bin/sh
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
  mkdir -p "$tree/bytes" "$tree/$(dirname "$2")"
  echo '#include <vector>' >"$tree/bytes/innocent.h"
  printf '#pragma once\n\n#include %s\n' "$3" >"$tree/$2"
  said=$("$check_arrows" "$tree" 2>&1)
  status=$?
  if [ "$1" = nothing ]; then
    expected=
    expected_status=0
  else
    expected=$1
    expected_status=1
  fi
  if [ "$said" != "$expected" ] || [ "$status" -ne "$expected_status" ]; then
    echo "FAILED: $2 with #include $3: status $status, said '$said' instead of '$expected'"
    failures=$((failures + 1))
  fi
}

# Down the arrows, sideways within a room, and out to libraries.
expect nothing app/a.cpp '"net/connector.h"'
expect nothing app/a.cpp '"fpga/fpga.h"'
expect nothing buttons/a.cpp '"fpga/fpga.h"'
expect nothing fpga/a.cpp '"panel/text.h"'
expect nothing net/a.cpp '"buttons/button_setter.h"'
expect nothing net/a.cpp '"protocol/encoders.h"'
expect nothing net/a.h '<QTcpSocket>'
expect nothing protocol/a.h '"../bytes/byte_view.h"'
expect nothing protocol/encoders.h '<QByteArray>'
expect nothing protocol/encoders.cpp '"protocol/converters.h"'
expect nothing protocol/records.h '"catalogue.h"'
expect nothing panel/a.h '"panel/registers.h"'
expect nothing panel/a.h '<ft2build.h>'
expect nothing panel/a.cpp '"logging/standard_output.h"'
expect nothing panel/ioctl_register_device.cpp '<sys/ioctl.h>'
expect nothing tests/net/a.cpp '<sys/ioctl.h>'
expect nothing build/moc/a.cpp '<sys/ioctl.h>'

# Up the arrows.
expect 'panel/a.h:3: must not include fpga/fpga.h' panel/a.h '"fpga/fpga.h"'
expect 'fpga/a.cpp:3: must not include buttons/button.h' fpga/a.cpp '"buttons/button.h"'
expect 'buttons/a.cpp:3: must not include net/connector.h' buttons/a.cpp '"net/connector.h"'
expect 'net/a.h:3: must not include app/daemon.h' net/a.h '"app/daemon.h"'
expect 'net/a.h:3: must not include fpga/fpga.h' net/a.h '"fpga/fpga.h"'
expect 'net/a.h:3: must not include buttons/button.h' net/a.h '"buttons/button.h"'
expect 'net/a.h:3: must not include buttons/button_setter_impl.h' net/a.h '"buttons/button_setter_impl.h"'
expect 'protocol/a.h:3: must not include net/connector.h' protocol/a.h '"net/connector.h"'
expect 'protocol/decode.h:3: must not include protocol/encoders.h' protocol/decode.h '"protocol/encoders.h"'
expect 'protocol/decode.h:3: must not include encoders.h' protocol/decode.h '"encoders.h"'
expect 'app/a.cpp:3: must not include simulator/options.h' app/a.cpp '"simulator/options.h"'

# Rooms without Qt, and without headers that need it.
expect 'panel/a.h:3: must not include QString' panel/a.h '<QString>'
expect 'panel/a.h:3: must not include QtCore/QString' panel/a.h '<QtCore/QString>'
expect 'panel/a.cpp:3: must not include logging/log_line.h' panel/a.cpp '"logging/log_line.h"'
expect 'protocol/catalogue.h:3: must not include QtGlobal' protocol/catalogue.h '<QtGlobal>'
expect 'stopwatch/a.h:3: must not include QElapsedTimer' stopwatch/a.h '<QElapsedTimer>'
expect 'bytes/a.h:3: must not include QByteArray' bytes/a.h '<QByteArray>'
expect 'paths/a.h:3: must not include QString' paths/a.h '<QString>'
expect 'net/event_client.h:3: must not include QTcpSocket' net/event_client.h '<QTcpSocket>'

# Also from an installed header, which has no root to start from.
expect 'protocol/a.h:3: must not include ../buttons/button.h' protocol/a.h '"../buttons/button.h"'

# One door to the hardware.
expect 'panel/a.cpp:3: must not include sys/ioctl.h' panel/a.cpp '<sys/ioctl.h>'
expect 'fpga/a.cpp:3: must not include sys/ioctl.h' fpga/a.cpp '<sys/ioctl.h>'

expect 'attic/a.cpp: its room is not in the table of arrows' attic/a.cpp '<vector>'

mkdir "$folder/empty"
"$check_arrows" "$folder/empty" >/dev/null 2>&1
if [ $? -ne 2 ]; then
  echo "FAILED: a folder without sources is not reported as one"
  failures=$((failures + 1))
fi

echo "$rows includes tried, $failures failures"
[ "$failures" -eq 0 ]
