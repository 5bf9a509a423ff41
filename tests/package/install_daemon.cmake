# SPDX-License-Identifier: Apache-2.0
# Installs only what a panel needs of BUILD into TREE, and looks at what is there.
file(REMOVE_RECURSE "${TREE}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${TREE}" --component daemon OUTPUT_QUIET
  COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE files RELATIVE "${TREE}" "${TREE}/*")
if(NOT files STREQUAL
    "bin/buttondriver;lib/systemd/system/buttondriver.service;lib/sysusers.d/buttondriver.conf")
  message(SEND_ERROR "installed: ${files}")
endif()
file(STRINGS "${TREE}/lib/systemd/system/buttondriver.service" start REGEX "^ExecStart=")
if(NOT start STREQUAL "ExecStart=${TREE}/bin/buttondriver no-map-file")
  message(SEND_ERROR "the unit says: ${start}")
endif()
