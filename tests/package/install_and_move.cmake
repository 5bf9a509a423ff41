# SPDX-License-Identifier: Apache-2.0
# Installs BUILD into an empty folder of TREE, and moves it to where the tests look for it.
file(REMOVE_RECURSE "${TREE}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${TREE}/first" OUTPUT_QUIET
  COMMAND_ERROR_IS_FATAL ANY)
file(RENAME "${TREE}/first" "${TREE}/moved")
