#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: needed_libraries.sh READELF PROGRAM LIBRARY...
#
# Fails when the program is linked with another set of shared libraries than the named ones, those of C and C++ aside.
readelf=$1
program=$2
shift 2
needed=$("$readelf" -d "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' |
  grep -Ev '^(libstdc\+\+|libgcc_s|libc|libm|libdl|libpthread|librt|ld-linux[a-z0-9-]*)\.so\.')
status=0
for library in "$@"; do
  echo "$needed" | grep -Eq "^lib$library\.so\." || { echo "FAILED: it does not need $library"; status=1; }
  needed=$(echo "$needed" | grep -Ev "^lib$library\.so\.")
done
[ -z "$needed" ] || { echo "FAILED: it needs $needed"; status=1; }
exit $status
