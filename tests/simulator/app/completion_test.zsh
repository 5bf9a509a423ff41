# SPDX-License-Identifier: Apache-2.0
# Whether the completion in the folder $1 offers what it should, and all options of the program $SIMULATOR.
#
#   SIMULATOR=PROGRAM zsh -f completion_test.zsh FOLDER
program=buttondriver-sim
. ${ZSH_ARGZERO:A:h}/../../support/completion/completion.zsh "$@"

told=(${(f)"$($SIMULATOR --help | grep -oE '^  (-., )?--[a-z-]+' | sed 's/.*--/--/' | LC_ALL=C sort)"})
(( $#told > 10 )) || { print "$SIMULATOR --help tells $#told options"; failures=1; }
expect "$told" '--'
expect '--port --ports-file' '--root folder --po'
expect '--quiet' '--qu'
expect '' '--verbose --qu'
expect '--version' '--quiet --ver'
expect '--verbose' '-V --ver'
expect '' '-h --he'
expect 'picture.png' 'pi'
expect '' '-- --po'
expect 'picture.png' '-- pi'
expect '' 'map pi'
expect '' 'map address pi'
expect 'folder' '--root '
expect '--root=folder' '--quiet --root=f'
expect 'off' '--http '
expect '--http=off' '--http='
expect '' '--port '
expect '' '--intensity='
for option in --font --ports-file --device --snapshot --record --log; do
  expect 'two\ words.png' "$option tw"
  expect "$option=two\\ words.png" "$option=tw"
done
# Colons in values.
touch a:b.png
expect '--quiet' '--http=[::1]:8080 --qu'
expect '--quiet' 'a:b.png 127.0.0.1:3003 --qu'
expect '' '--http 127.0.0.1:'
expect 'a:b.png' 'a:'
expect '--log=a:b.png' '--log=a:b'
finish
