#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: ini.sh FILE PLACE
#
# FILE is a configuration of the font, of which the daemon's tool says that it is in order; there is such a font.
cp -rL build/qt6/share/buttondriver/panel-root ini || exit 2
cp "$1" ini/etc/rv1000e/launcher.cfg || exit 2
buttonctl --port 1 doctor --root ini --virtual >ini/findings 2>&1
[ "$(grep -cE '^ok +(configuration|font):' ini/findings)" -eq 2 ] && { rm -r ini; exit; }
echo "FAILED: $2: the font is not as the program wants it:"
cat ini/findings
exit 1
