# SPDX-License-Identifier: Apache-2.0
# For tests of completion in zsh. Who reads this first, with its own arguments, gets a folder with some files as the current
# one, and `expect`, and ends with `finish`.
#
#   program=PROGRAM; . completion.zsh "$@"          $1: the folder with the completion of PROGRAM
#
# A real zsh edits lines, and all that is offered is put into the line at once. zsh edits lines on a terminal only. So the
# test runs itself on one; what it has to say then comes to the file $2.
if (( $# == 1 )); then
  zmodload zsh/zpty || exit 2
  file=$(mktemp) || exit 2
  zpty editor zsh -f ${(q)ZSH_ARGZERO:A} ${(q)1:A} $file
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
  local line="$program $2" wanted="$program $2"
  [[ -z $1 ]] || wanted="${wanted% *} $1"
  vared -i offer_and_end line
  if [[ $line != $wanted ]]; then
    print -r -- "$program $2: becomes '$line', not '$wanted'"
    failures=1
  fi
}
finish() {
  (( failures )) || print 'all rows are right'
  exit $failures
}

[[ $_comps[$program] == _$program ]] || { print 'not registered'; failures=1; }
