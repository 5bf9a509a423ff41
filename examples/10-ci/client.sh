#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# The client under test: shows on the panel how a pump is doing.
#
#   client.sh idle|running|stuck
#
# The panel is where BUTTONDRIVER_HOST and BUTTONDRIVER_PORT say, which buttonctl reads.
case ${1:-} in
idle) text='Pump idle' lamp=off ;;
running) text='Pump running' lamp=on ;;
stuck) text='Pump stuck' lamp='blink 250' ;;
*) echo "client.sh: the pump is idle, running or stuck, not '${1:-}'" >&2; exit 2 ;;
esac
buttonctl batch <<LINES
text 0 0 'Pump 1'
text 0 1 '$text'
led 5 $lamp
ping
LINES
