#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: needs_only.sh READELF LIBRARY
#
# Fails when the library has to be loaded with anything but the C library, or offers anything but functions of its.
needed=$("$1" -d "$2" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -Ev '^(libc|libdl|libpthread)\.so\.')
offered=$("$1" --dyn-syms --wide "$2" | awk '$4 == "FUNC" && $5 != "LOCAL" && $7 != "UND" { print $8 }' |
  grep -Evx 'open(64)?|openat(64)?|__open(64)?_2|__openat(64)?_2|ioctl|__ioctl_time64')
if [ -n "$needed$offered" ]; then
  echo "FAILED: needs '$needed', offers '$offered'"
  exit 1
fi
