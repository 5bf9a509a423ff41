# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# For tests of completion in bash. Who reads this gets a folder with some files as the current one, and `expect`, and ends
# with `exit $failures`.
#
#   . completion.sh PROGRAM FUNCTION FILE
#
# FILE holds the completion of PROGRAM, and FUNCTION is what it is to register.
program=$1 completing=$2
# shellcheck source=/dev/null
source "$3" || exit 2
here=$(mktemp -d) && cd "$here" || exit 2
trap 'rm -r "$here"' EXIT
mkdir folder
touch picture.png 'two words.png' folder/only.raw
printf '127.0.0.1 %s\n' panel-left panel-right >hosts
export HOSTFILE=$here/hosts

# shellcheck disable=SC2034 # who reads this ends with it
failures=0
# expect OFFERS WORD... : what is offered for the last word, when bash has split the line into these words
expect() {
  local offers=$1
  shift
  COMP_WORDS=("$program" "$@")
  COMP_CWORD=$#
  COMPREPLY=(left over)
  "$completing"
  local got
  got=$(IFS='|'; echo "${COMPREPLY[*]}")
  if [[ $got != "$offers" ]]; then
    printf '%s: offers "%s", not "%s"\n' "$*" "$got" "$offers"
    failures=1
  fi
}

[[ $(complete -p "$program") == "complete -F $completing $program" ]] || { echo 'not registered'; failures=1; }
