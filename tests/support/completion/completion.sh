# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# For tests of completion in bash. Who reads this gets a folder with some files as the current one, and `expect`, and ends
# with `exit $failures`.
#
#   . completion.sh PROGRAM FUNCTION FILE
#
# FILE holds the completion of PROGRAM, and FUNCTION is what it is to register.
#
# A real bash edits lines: how it splits them, and which part of a word it replaces, is up to it. It reads keys from a pipe
# and tells the line on descriptor 3.
program=$1 completing=$2
here=$(mktemp -d) && cd "$here" || exit 2
trap 'rm -r "$here"' EXIT
mkdir folder
touch picture.png 'two words.png' folder/only.raw
printf '127.0.0.1 %s\n' panel-left panel-right >hosts
coproc editor {
  HOSTFILE=$here/hosts HISTFILE='' INPUTRC=/dev/null LC_ALL=C TERM=dumb \
    exec setsid bash --noprofile --norc -i 3>&1 >/dev/null 2>&1
}
# shellcheck disable=SC2154 # the coprocess is called so
to_editor=${editor[1]} from_editor=${editor[0]}

# in_editor COMMAND : runs it in the bash that edits lines
in_editor() { printf '%s\n' "$1" >&"$to_editor"; }
# hear : puts into said the next line that it says
hear() { IFS= read -r -t 20 said <&"$from_editor" || { echo 'the line editor says nothing'; exit 2; }; }
cat >setup <<'END'
bind '"\C-t": insert-completions' '"\C-k": kill-whole-line'
bind -x '"\C-o": printf "%s\n" "$READLINE_LINE" >&3'
END
in_editor "source setup; rm setup; source '$3'; complete -p $program >&3"

failures=0
# expect_line WANTED LINE REST KEY : what becomes of both parts of the line with this key, when the cursor is between them
expect_line() {
  local line="$program $2$3" wanted="$program $1" back=''
  [[ ! $3 ]] || printf -v back '\x02%.0s' $(seq ${#3})
  printf '%s%s%s\x0f\x0b' "$line" "$back" "$4" >&"$to_editor"
  hear
  if [[ $said != "$wanted" ]]; then
    printf '%s: becomes "%s", not "%s"\n' "$line" "$said" "$wanted"
    failures=1
  fi
}
# expect OFFERS LINE [REST] : what stands after the last blank of LINE when all that is offered is put into it; nothing: the
# line stays as it is. The cursor is before REST.
expect() {
  local line=" $2"
  [[ ! $1 ]] || line="${line% *} $1 "
  expect_line "${line# }${3-}" "$2" "${3-}" $'\x14'
}
# expect_typed WANTED LINE : what becomes of the line with the tab key
expect_typed() { expect_line "$1" "$2" '' $'\t'; }

hear
# shellcheck disable=SC2034 # who reads this ends with it
[[ $said == "complete -F $completing $program" ]] || { echo 'not registered'; failures=1; }
