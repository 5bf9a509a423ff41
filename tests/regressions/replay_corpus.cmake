# SPDX-License-Identifier: Apache-2.0
# Unpacks a kept corpus and runs its inputs through the fuzz target. It is unpacked for each run, so that what runs is
# always what the archive holds now.
#
#   cmake -D ARCHIVE=<target>.tar.gz -D FOLDER=<replaced by what is unpacked> -D REPLAY=<target>_replay -P <this file>
#
# An emulator may come before the program.
if(NOT EXISTS "${ARCHIVE}")
  message(FATAL_ERROR "there is no corpus ${ARCHIVE}")
endif()
file(REMOVE_RECURSE "${FOLDER}")
get_filename_component(parent "${FOLDER}" DIRECTORY)
file(ARCHIVE_EXTRACT INPUT "${ARCHIVE}" DESTINATION "${parent}")
execute_process(COMMAND ${REPLAY} "${FOLDER}" RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${REPLAY}: ${result}")
endif()
