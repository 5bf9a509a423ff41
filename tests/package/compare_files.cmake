# SPDX-License-Identifier: Apache-2.0
# Compares the files of PACKAGE with LIST, whose lines may name a component behind the file. The fonts are the machine's
# own, and the pages are whatever docs/ has; the names of the LIBRARIES' folder and of the CONFIGURATION are the build's.
file(GLOB_RECURSE installed RELATIVE "${PACKAGE}" "${PACKAGE}/*")
list(FILTER installed EXCLUDE REGEX "\\.pcf\\.gz$|^share/doc/")
list(TRANSFORM installed REPLACE "^${LIBRARIES}/" "lib/")
string(TOLOWER "${CONFIGURATION}" configuration)
list(TRANSFORM installed REPLACE "-${configuration}\\.cmake$" "-CONFIGURATION.cmake")
file(STRINGS "${LIST}" listed REGEX "^[^#]")
list(TRANSFORM listed REPLACE " .*" "")

set(missing ${listed})
list(REMOVE_ITEM missing ${installed})
set(extra ${installed})
list(REMOVE_ITEM extra ${listed})
foreach(file IN LISTS missing)
  message(SEND_ERROR "not installed: ${file}")
endforeach()
foreach(file IN LISTS extra)
  message(SEND_ERROR "not listed: ${file}")
endforeach()
