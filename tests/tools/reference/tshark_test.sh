#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: tshark_test.sh TSHARK DISSECTOR
#
# Makes captures with few packets, and looks at what Wireshark shows of them with the dissector.
tshark=$1 dissector=$2
tools=$(dirname "$tshark")
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 2
export HOME="$folder" WIRESHARK_CONFIG_DIR="$folder" LC_ALL=C.UTF-8 # nobody's own settings and plugins
failures=0
rows=0

headers=54 # bytes of a packet before its content

# expect SHOWN BYTES PACKET...: the packets, given in hexadecimal, go over one connection, and so many bytes of the
# content of each are captured. SHOWN has, parted by ";" for each packet with messages: summary|opcodes|remarks
expect() {
  rows=$((rows + 1))
  shown=$1 bytes=$2
  shift 2
  for packet in "$@"; do
    printf '000000'
    printf '%s' "$packet" | sed 's/ //g; s/../ &/g'
    printf '\n\n'
  done >packets
  "$tools/text2pcap" -q -T 40000,3003 packets whole.pcap 2>errors &&
    "$tools/editcap" -s $((headers + bytes)) whole.pcap cut.pcap 2>>errors &&
    "$tshark" -r cut.pcap -X "lua_script:$dissector" -Y buttondriver -T fields -E 'separator=|' \
      -e _ws.col.Info -e buttondriver.opcode -e _ws.expert.message >lines 2>>errors
  status=$?
  is=$(paste -s -d ';' lines)
  if [ "$status" -ne 0 ] || [ "$is" != "$shown" ]; then
    echo "FAILED: $*, $bytes bytes of each: status $status, '$is' instead of '$shown'"
    cat errors
    failures=$((failures + 1))
  fi
}

all=9999
led='0000000c 00000015 0000001f 00000001' # BMS_SetLEDStatusIndicator
ping='00000004 0000000c'
short='The message is shorter than its layout; the bytes that are missing read as zero'
cut='The capture has only the beginning of the message'

# Whole messages.
expect 'BMS_SetLEDStatusIndicator|21|' $all "$led"
expect 'BMS_SetLEDStatusIndicator, BMS_Ping|21,12|;BMS_Ping|12|' $all "$led $ping" "$ping"
# Messages that come in several packets, alone and with others.
expect 'BMS_SetLEDStatusIndicator|21|' $all '0000000c 0000' '0015' '0000001f 00000001'
expect 'BMS_SetLEDStatusIndicator, BMS_Ping|21,12|' $all '0000000c 00000015' "0000001f 00000001 $ping"
expect 'BMS_SetLEDStatusIndicator, BMS_Ping, BMS_Ping|21,12,12|;BMS_Ping|12|' $all \
  '0000000c 00000015' "0000001f 00000001 $ping $ping" "$ping"
expect 'BMS_Ping|12|;BMS_SetLEDStatusIndicator, BMS_SetLEDStatusIndicator|21,21|;BMS_Ping|12|' $all \
  "$ping 0000000c 00000015" "0000001f 00000001 $led 00000004" '0000000c'
# Messages that are too short, that do not exist, and one that never arrives.
expect "BMS_SetLEDStatusIndicator|21|$short" $all '0000000a 00000015 0000001f 0000'
expect "BMS_SetLEDStatusIndicator|21|$short" $all '00000006 00000015 00ff'
expect 'opcode 170|170|There is no such message' $all '00000004 000000aa'
expect '' $all '0000000c 0000' '0015 0000001f'
# Packets that were not captured as a whole.
expect "cut off||$cut" 2 "$led $ping"
expect "cut off||$cut" 6 "$led $ping"
expect "BMS_SetLEDStatusIndicator|21|$cut" 10 "$led $ping"
expect 'BMS_SetLEDStatusIndicator|21|' 16 "$led $ping"
expect "BMS_SetLEDStatusIndicator, cut off|21|$cut" 18 "$led $ping"
expect 'BMS_SetLEDStatusIndicator, BMS_Ping|21,12|' 24 "$led $ping"

echo "$rows captures looked at, $failures failures"
[ "$failures" -eq 0 ]
