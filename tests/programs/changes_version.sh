#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: changes_version.sh CHANGELOG VERSION
#
# Fails unless the topmost version of the changes is this one.
newest=$(sed -n 's/^## \([^ ,]*\).*/\1/p' "$1" | head -n 1)
[ "$newest" = "$2" ] || { echo "FAILED: the newest changes are those of '$newest', and this is '$2'"; exit 1; }
