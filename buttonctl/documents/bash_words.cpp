// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/documents/bash_words.h"

namespace buttondriver::buttonctl {

// They need nothing but bash itself, and do not mind whether the package bash-completion is loaded, nor which
// characters are in COMP_WORDBREAKS: only how bash has split the line, and which part of the word it wants to replace,
// counts.
const char *const bash_words_functions =
    R"bash(# Puts the words up to the cursor into words. COMP_WORDS has them split at each ":" and "=".
_buttonctl_join() {
  local line=${COMP_LINE:0:COMP_POINT} redirection='[<>&]*' blanks word i
  words=()
  for ((i = 0; i <= COMP_CWORD; ++i)); do
    blanks=${line%%[^[:space:]]*}
    line=${line#"$blanks"}
    # The cursor may stand in the last one.
    word=$line
    ((i == COMP_CWORD)) || word=${COMP_WORDS[i]}
    line=${line#"$word"}
    # shellcheck disable=SC2053 # redirection is a pattern
    if ((i > 0)) && [[ ! $blanks && ${COMP_WORDS[i - 1]} != $redirection ]]; then
      words[-1]+=$word
    else
      words+=("$word")
    fi
  done
}

# COMPREPLY holds what can follow the beginning $2 of the word $1. Makes of it what can replace the end $3 of the word:
# bash leaves in the line what stands before the last ":" or "=", and that too.
_buttonctl_fit_replies() {
  local beginning=$2 end=$3 kept i
  # With "sudo" before the program, this is the last of COMP_WORDS, and nothing is replaced.
  [[ $end != [:=]* ]] || end=''
  kept=${1%"$end"}
  # Without its quoting. Names that have these characters themselves, compgen does not find after a ":".
  kept=${kept//[\\\"\']/}
  for i in "${!COMPREPLY[@]}"; do
    # bash does not find the folder by the part that is left of its name.
    if [[ ${#kept} -gt ${#beginning} && -d ${COMPREPLY[i]} ]]; then
      COMPREPLY[i]+=/
      compopt -o nospace 2>/dev/null
    fi
    COMPREPLY[i]=$beginning${COMPREPLY[i]}
    COMPREPLY[i]=${COMPREPLY[i]:${#kept}}
  done
}

)bash";

} // namespace buttondriver::buttonctl
