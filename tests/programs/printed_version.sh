#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: printed_version.sh LINE PROGRAM OPTION
#
# Fails unless the program ends well and prints this line and nothing else on both channels.
printed=$("$2" "$3" 2>&1) || { echo "FAILED: exit status $?"; exit 1; }
[ "$printed" = "$1" ] || { echo "FAILED: it printed '$printed', not '$1'"; exit 1; }
