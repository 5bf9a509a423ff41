# SPDX-License-Identifier: Apache-2.0
# Target api-docs: the reference of what the headers declare, in docs/api/html of the build folder. Warnings are errors.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  message(STATUS "There is no target api-docs: that takes doxygen")
  return()
endif()

set(DOXYGEN_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/docs/api")
set(DOXYGEN_PROJECT_BRIEF "${PROJECT_DESCRIPTION}")
set(DOXYGEN_STRIP_FROM_PATH "${PROJECT_SOURCE_DIR}")
set(DOXYGEN_STRIP_FROM_INC_PATH
  "${PROJECT_SOURCE_DIR}/daemon" "${PROJECT_SOURCE_DIR}/libraries" "${PROJECT_SOURCE_DIR}/base")
set(DOXYGEN_JAVADOC_AUTOBRIEF YES)
set(DOXYGEN_EXTRACT_ALL YES)
set(DOXYGEN_QUIET YES)
set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)
set(DOXYGEN_HAVE_DOT NO)
set(DOXYGEN_GENERATE_LATEX NO)
file(GLOB_RECURSE api_headers CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/base/*.h" "${PROJECT_SOURCE_DIR}/libraries/*.h" "${PROJECT_SOURCE_DIR}/daemon/*.h")
doxygen_add_docs(api-docs ${api_headers} COMMENT "Writing the reference of the headers")
