# SPDX-License-Identifier: Apache-2.0
# Looks for the version in PROGRAM without its symbols. STRIPPED is where such a copy goes.
execute_process(COMMAND "${STRIP}" -o "${STRIPPED}" "${PROGRAM}" COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS "${STRIPPED}" lines REGEX "^buttondriver [0-9.]+$")
if(NOT lines STREQUAL "buttondriver ${VERSION}")
  message(SEND_ERROR "found '${lines}' instead of buttondriver ${VERSION}")
endif()
