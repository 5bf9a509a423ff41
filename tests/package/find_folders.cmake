# SPDX-License-Identifier: Apache-2.0
# Fails for each text file of PACKAGE that names one of FOLDERS. The unit may: units have absolute paths.
string(REPLACE "," ";" folders "${FOLDERS}")
file(GLOB_RECURSE files "${PACKAGE}/include/*" "${PACKAGE}/${LIBRARIES}/*.cmake" "${PACKAGE}/${LIBRARIES}/*.pc"
  "${PACKAGE}/share/*.md" "${PACKAGE}/share/*.lua")
list(LENGTH files count)
if(count LESS 20)
  message(SEND_ERROR "only ${count} files")
endif()
foreach(file IN LISTS files)
  file(READ "${file}" text)
  foreach(folder IN LISTS folders)
    string(FIND "${text}" "${folder}" place)
    if(NOT place EQUAL -1)
      message(SEND_ERROR "${file} names ${folder}")
    endif()
  endforeach()
endforeach()
