# SPDX-License-Identifier: Apache-2.0
# Whether the completion for zsh in the folder $1 offers what it should: a real zsh edits lines, and all that is offered
# is put into the line at once.
#
#   zsh -f completion_test.zsh FOLDER
#
# zsh edits lines on a terminal only. So the script runs itself on one; what it has to say then comes to the file $2.
if (( $# == 1 )); then
  zmodload zsh/zpty || exit 2
  file=$(mktemp) || exit 2
  zpty editor zsh -f ${(q)${(%):-%x}:A} ${(q)1:A} $file
  while zpty -r editor drawn; do :; done
  said=$(<$file)
  rm $file
  print -r -- $said
  [[ $said == 'all rows are right' ]]
  exit
fi

exec >$2 2>&1
here=$(mktemp -d) && cd $here || exit 2
trap 'cd / && rm -r $here' EXIT
mkdir folder
touch picture.png 'two words.png' folder/only.raw
fpath=($1 $fpath)
autoload -Uz compinit && compinit -D -u
zstyle ':completion:*' hosts panel-left panel-right
zstyle ':completion:*' users buttondriver bob

offer_all() {
  compstate[vared]= # a line for a command is edited here, not a value
  _main_complete
  compstate[insert]=all compstate[list]=
}
offer_and_end() {
  zle offer_all
  zle .accept-line
}
zle -C offer_all complete-word offer_all
zle -N offer_and_end

failures=0
# expect OFFERS LINE: what stands in the place of the last word of the line then; nothing: the line stays as it is.
# A "/" or "=" that zsh would take away again, before a blank, is gone.
expect() {
  local line="buttonctl $2" wanted="buttonctl $2"
  [[ -z $1 ]] || wanted="${wanted% *} $1"
  vared -i offer_and_end line
  if [[ $line != $wanted ]]; then
    print -r -- "buttonctl $2: becomes '$line', not '$wanted'"
    failures=1
  fi
}

[[ $_comps[buttonctl] == _buttonctl ]] || { print 'not registered'; failures=1; }

# Commands, after options with and without values.
expect 'reconfig record replay' 're'
expect 'message' '-n --host panel -p 3003 mes'
expect 'led' '-np 3003 le'
expect 'led' '--host=panel le'
expect 'test text toggle' '-- t'
expect '' 'nonsense '
# Arguments.
expect '0 1 2 all' 'text '
expect '0 1 2 3 4 5 6 7' 'text all '
expect '' 'text 0 1 '
expect '0 1 2 3 4 5 6 7' 'subtext 1 '
expect '0 1 2 all' 'blackout '
expect '0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 all' 'led '
expect 'on off' 'led 5 o'
expect 'blink' 'led 5 b'
expect '' 'led 5 blink '
expect '3 30 31' 'status 3'
expect 'on off' 'status 3 '
expect '0 1 all' 'toggle '
expect 'on off' '--dry-run toggle -p 3003 1 '
expect 'folder picture.png two\ words.png' 'image 1 '
expect 'two\ words.png' 'upload 4 tw'
expect 'picture.png' 'batch p'
expect 'picture.png' 'decode p'
expect '' 'decode picture.png p'
expect 'folder/only.raw' 'replay folder/'
expect 'picture.png' 'run folder/only.raw p'
expect 'folder' 'test f'
expect 'folder' 'test picture.png f'
# Options.
expect '--version' '--v'
expect '' 'text --v'
expect '--black-on-white' 'text 0 0 --b'
expect '--black-on-white' 'text 0 0 Alarm --b'
expect '' 'text -- --b'
expect '--panel --port' 'run a.scenario --p'
expect '--panel' 'run -p 1 a.scenario --p'
expect '--help --host' 'reconfig --h'
expect 'folder' 'doctor --root '
expect '--root=folder' 'doctor --root='
expect 'bob buttondriver' 'doctor --user '
expect 'panel-left panel-right' '-H '
expect 'panel-right' 'record a --to panel-r'
expect 'picture.png' 'test --junit p'
expect 'picture.png' 'test --client=x --simulator p'
expect '0 1 2' 'screenshot --screen '
expect 'auto none 256 24bit' 'watch --colours '
expect '--colors=none' 'watch --colors=n'
expect '' 'ping --count '
# Messages and their fields.
expect 'BMS_SetLEDState BMS_SetLEDStatusIndicator' 'message BMS_SetLEDSt'
expect 'button_id= state= time=' 'message BMS_SetLEDState '
expect 'state=' 'message BMS_SetLEDState button_id=5 st'
expect '' 'message BMS_SetLEDState button_id='
expect 'flag= line_id= screen_id= text=' 'message BMS_TFTTextLine '
expect 'image=picture.png' 'message BMS_DrawTFTImage _screen_id=0 image=p'
expect 'image=folder/only.raw' 'message -n BMS_UploadImage image=folder/o'
expect '' 'message BMS_TFTTextLine text=p'
expect '' 'message BMS_Ping '
(( failures )) || print 'all rows are right'
exit $failures
