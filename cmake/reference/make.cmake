# SPDX-License-Identifier: Apache-2.0
# Makes pages anew; what was there before may be of other sources. DOXYGEN makes them in FOLDER/html, as DOXYFILE says.
# The scripts that it puts there are taken away: the pages call none (header.html, style.css).
file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")
execute_process(COMMAND "${DOXYGEN}" "${DOXYFILE}" COMMAND_ERROR_IS_FATAL ANY)
file(GLOB scripts "${FOLDER}/html/*.js")
file(REMOVE ${scripts})
