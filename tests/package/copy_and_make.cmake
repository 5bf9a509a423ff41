# SPDX-License-Identifier: Apache-2.0
# Builds a copy of the folder SOURCE in BINARY with MAKE.
file(REMOVE_RECURSE "${BINARY}")
file(COPY "${SOURCE}/" DESTINATION "${BINARY}")
execute_process(COMMAND "${MAKE}" WORKING_DIRECTORY "${BINARY}" COMMAND_ERROR_IS_FATAL ANY)
