# SPDX-License-Identifier: Apache-2.0
# What doxygen makes of the comments. Warnings are errors. To be included after the rooms.
#
#   api-docs       the reference of the installed headers, in docs/api/html of the build folder. What they declare and
#                  nobody has described is a warning.
#   source-docs    the same of all headers, in docs/sources/html, where much describes itself
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  message(STATUS "There are no targets api-docs and source-docs: they take doxygen")
  return()
endif()

set(reference "${PROJECT_SOURCE_DIR}/cmake/reference")
set(DOXYGEN_PROJECT_BRIEF "${PROJECT_DESCRIPTION}")
set(DOXYGEN_STRIP_FROM_PATH "${PROJECT_BINARY_DIR}/docs" "${PROJECT_SOURCE_DIR}")
set(DOXYGEN_STRIP_FROM_INC_PATH
  "${PROJECT_SOURCE_DIR}/daemon" "${PROJECT_SOURCE_DIR}/libraries" "${PROJECT_SOURCE_DIR}/base")
set(DOXYGEN_JAVADOC_AUTOBRIEF YES)
set(DOXYGEN_QUIET YES)
set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)
set(DOXYGEN_HAVE_DOT NO)
set(DOXYGEN_GENERATE_LATEX NO)
# They are to be the same wherever and whenever they are made, and to come without libraries of JavaScript.
set(DOXYGEN_HTML_TIMESTAMP NO)
set(DOXYGEN_SEARCHENGINE NO)
set(DOXYGEN_HTML_DYNAMIC_MENUS NO)
set(DOXYGEN_HTML_HEADER "${reference}/header.html")
set(DOXYGEN_HTML_FOOTER "${reference}/footer.html")
set(DOXYGEN_HTML_EXTRA_STYLESHEET "${reference}/style.css")

# buttondriver_reference(<target> <folder> <comment> <files...>)
#
# A target and a test that make the pages of these files anew, in docs/<folder>/html.
function(buttondriver_reference target folder comment)
  set(DOXYGEN_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/docs/${folder}")
  doxygen_add_docs(${target}-file ${ARGN})
  set(command "${CMAKE_COMMAND}" "-DDOXYGEN=${DOXYGEN_EXECUTABLE}"
    "-DDOXYFILE=${PROJECT_BINARY_DIR}/Doxyfile.${target}-file" "-DFOLDER=${DOXYGEN_OUTPUT_DIRECTORY}"
    -P "${reference}/make.cmake")
  add_custom_target(${target} COMMAND ${command}
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}" COMMENT "${comment}" VERBATIM)
  set_property(GLOBAL PROPERTY BUTTONDRIVER_COMMAND_OF_${target} "${command}")
endfunction()

file(GLOB_RECURSE all_headers CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/base/*.h" "${PROJECT_SOURCE_DIR}/libraries/*.h" "${PROJECT_SOURCE_DIR}/daemon/*.h")
set(DOXYGEN_EXTRACT_ALL YES)
buttondriver_reference(source-docs sources "Writing the reference of all headers" ${all_headers})
unset(DOXYGEN_EXTRACT_ALL)

get_property(public_headers GLOBAL PROPERTY BUTTONDRIVER_PUBLIC_HEADERS)
get_property(components GLOBAL PROPERTY BUTTONDRIVER_COMPONENT_ROWS)
configure_file("${reference}/main_page.md.in" "${PROJECT_BINARY_DIR}/docs/main_page.md" @ONLY)
set(DOXYGEN_USE_MDFILE_AS_MAINPAGE "${PROJECT_BINARY_DIR}/docs/main_page.md")
set(DOXYGEN_DISTRIBUTE_GROUP_DOC YES)
set(DOXYGEN_EXCLUDE_SYMBOLS "*_detail")
# The way to a header depends on where it is installed: the main page tells it.
set(DOXYGEN_SHOW_HEADERFILE NO)
set(DOXYGEN_SHOW_INCLUDE_FILES NO)
# The fields of the messages are described once, in the catalogue.
set(DOXYGEN_FILTER_PATTERNS
  "\"*.h=awk -f ${reference}/described_headers.awk ${PROJECT_SOURCE_DIR}/docs/protocol.md\"")
set(DOXYGEN_VERBATIM_VARS DOXYGEN_FILTER_PATTERNS)
buttondriver_reference(api-docs api "Writing the reference of the installed headers"
  "${DOXYGEN_USE_MDFILE_AS_MAINPAGE}" ${public_headers})
