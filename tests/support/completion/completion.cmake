# SPDX-License-Identifier: Apache-2.0
find_program(BUTTONDRIVER_BASH bash DOC "Tests the completion for bash")
find_program(BUTTONDRIVER_ZSH zsh DOC "Tests the completion for zsh")

# buttondriver_completion_tests(<room> <program> <completions> <tests>)
#
# Tests in <room> of the program's completion, which lies in the folder <completions> for both shells, with
# completion_test.sh and completion_test.zsh in the folder <tests>. They find the simulator in $SIMULATOR.
function(buttondriver_completion_tests room program completions tests)
  set(in_bash "${room}.completion_offers_what_it_should")
  set(in_zsh "${room}.completion_in_zsh_offers_what_it_should")
  if(BUTTONDRIVER_BASH)
    add_test(NAME ${in_bash}
      COMMAND ${BUTTONDRIVER_BASH} "${CMAKE_CURRENT_SOURCE_DIR}/${tests}/completion_test.sh" "${completions}/${program}")
  else()
    add_test(NAME ${in_bash} COMMAND ${CMAKE_COMMAND} -E echo "needs bash")
  endif()
  if(BUTTONDRIVER_ZSH)
    add_test(NAME ${in_zsh}
      COMMAND ${BUTTONDRIVER_ZSH} -f "${CMAKE_CURRENT_SOURCE_DIR}/${tests}/completion_test.zsh" "${completions}")
  else()
    add_test(NAME ${in_zsh} COMMAND ${CMAKE_COMMAND} -E echo "needs zsh")
  endif()
  # Not silently: without its shell, each is one that was skipped.
  set_tests_properties(${in_bash} ${in_zsh} PROPERTIES TIMEOUT 60 SKIP_REGULAR_EXPRESSION "^needs "
    ENVIRONMENT "SIMULATOR=$<TARGET_FILE:buttondriver-sim>")
endfunction()
