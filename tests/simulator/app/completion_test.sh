#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# Whether the completion in the file $1 offers what it should, and all options of the program $SIMULATOR.
set -u
# shellcheck source=tests/support/completion/completion.sh
. "$(dirname "$0")/../../support/completion/completion.sh" buttondriver-sim _buttondriver_sim "$1"

mapfile -t options < <("$SIMULATOR" --help | grep -oE '^  (-., )?--[a-z-]+' | tr -d ' ,' | sed -E 's/^(-[a-zA-Z])--/\1\n--/')
((${#options[@]} > 10)) || { echo "$SIMULATOR --help tells ${#options[@]} options"; exit 1; }
expect "$(IFS='|'; echo "${options[*]}")" -
expect '--port|--ports-file' --root folder --po
expect 'picture.png' pi
expect '' -- map --po
expect 'picture.png' -- pi
expect 'folder' --root ''
expect 'folder' --root =
expect 'folder' --quiet --root = f
expect 'off' --http ''
expect '' --port ''
expect '' --intensity = ''
for option in --font --ports-file --device --snapshot --record --log; do
  expect 'two words.png' $option tw
  expect 'two words.png' $option = tw
done
# shellcheck disable=SC2154 # completion.sh sets it
exit $failures
