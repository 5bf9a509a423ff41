#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: needed_libraries_test.sh READELF PROGRAM
#
# A panel has no display server: the daemon must not be linked with anything but Qt's Core and Network, FreeType, zlib,
# and the libraries of C and C++.
needed=$("$1" -d "$2" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
for library in libQt[56]Core libQt[56]Network libfreetype 'libstdc++' libc; do
  echo "$needed" | grep -q "^$library\.so\." || { echo "FAILED: it does not need $library: is this the daemon?"; exit 1; }
done
others=$(echo "$needed" |
  grep -Ev '^(libQt[56](Core|Network)|libfreetype|libz|libstdc\+\+|libgcc_s|libc|libm|libdl|libpthread|ld-linux[a-z0-9-]*)\.so\.')
[ -z "$others" ] || { echo "FAILED: it needs $others"; exit 1; }
