#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# Whether the completion in the file $1 offers what it should, and all options of the program $SIMULATOR.
set -u
completion_of_buttonctl=$(realpath "$(dirname "$0")/../../../buttonctl/completion/buttonctl")
# shellcheck source=tests/support/completion/completion.sh
. "$(dirname "$0")/../../support/completion/completion.sh" buttondriver-sim _buttondriver_sim "$1"

mapfile -t options < <("$SIMULATOR" --help | grep -oE '^  (-., )?--[a-z-]+' | tr -d ' ,' | sed -E 's/^(-[a-zA-Z])--/\1\n--/')
((${#options[@]} > 10)) || { echo "$SIMULATOR --help tells ${#options[@]} options"; exit 1; }
expect "$(printf '%s\n' "${options[@]}" | LC_ALL=C sort | paste -s -d ' ')" -
expect '--port --ports-file' '--root folder --po'
expect 'picture.png' 'pi'
expect '' '-- map --po'
expect 'picture.png' '-- pi'
expect 'folder' '--root '
expect '--root=folder' '--root='
expect '--root=folder' '--quiet --root=f'
expect 'off' '--http '
expect '' '--port '
expect '' '--intensity='
for option in --font --ports-file --device --snapshot --record --log; do
  expect 'two\ words.png' "$option tw"
  expect "$option=two\\ words.png" "$option=tw"
done
# bash splits a line at each ":", "=" and "@".
in_editor 'touch a:b.png; mkdir sub:dir'
expect '--quiet' '--http=127.0.0.1:8080 --qu'
expect '--quiet' 'a:b.png 127.0.0.1:3003 --qu'
expect 'folder' '--http 127.0.0.1:8080 --root fo'
expect '' '--http 127.0.0.1:'
expect '' '--http=[::1]:pi'
expect 'a:b.png' 'a:'
expect 'a:b.png' 'sub:dir a:b' 'c:d'
expect '--log=a:b.png' '--log=a:b'
expect '--root=sub:dir/' '--root=sub:'
expect 'picture.png' '-- a:b pi'
expect '' '-- a:b --qu'
in_editor 'touch -- --root=x.png'
expect '--root=x.png' '-- --root='
# shellcheck disable=SC2016 # for the other bash
in_editor 'COMP_WORDBREAKS=${COMP_WORDBREAKS//[:=]}'
expect 'a:b.png' 'a:'
expect '--http=off' '--http='

# The functions that split and fit are those of the completion of buttonctl.
functions_of() { sed "/^# Puts the words/,\$!d; s/_$1_/_/g; /^_fit_replies()/,/^}/{/^}/q}" "$2"; }
there=$(functions_of buttonctl "$completion_of_buttonctl")
[[ $there == *_fit_replies* ]] || { echo "buttonctl's completion has no _fit_replies"; failures=1; }
diff <(functions_of buttondriver_sim "$1") - <<<"$there" || failures=1
# shellcheck disable=SC2154 # completion.sh sets it
exit $failures
