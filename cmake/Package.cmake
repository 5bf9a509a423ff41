# SPDX-License-Identifier: Apache-2.0
# The CMake package of what the rooms install, for find_package(buttondriver COMPONENTS ...). To be included after them.
include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/buttondriver")
get_property(package_components GLOBAL PROPERTY BUTTONDRIVER_COMPONENTS)
set(package_qt_modules "")
foreach(component IN LISTS package_components)
  get_property(modules GLOBAL PROPERTY BUTTONDRIVER_QT_MODULES_${component})
  string(APPEND package_qt_modules "set(buttondriver_qt_modules_${component} ${modules})\n")
endforeach()
# Newer releases of the same Qt are fine, older ones lack what our archives may use.
string(REGEX MATCH "^[0-9]+\\.[0-9]+" package_qt_version "${${QT_IN_USE}_VERSION}")

configure_package_config_file(cmake/buttondriverConfig.cmake.in "${PROJECT_BINARY_DIR}/buttondriverConfig.cmake"
  INSTALL_DESTINATION "${package_folder}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/buttondriverConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(EXPORT buttondriver NAMESPACE buttondriver:: FILE buttondriverTargets.cmake DESTINATION "${package_folder}"
  COMPONENT development)
install(FILES
    "${PROJECT_BINARY_DIR}/buttondriverConfig.cmake"
    "${PROJECT_BINARY_DIR}/buttondriverConfigVersion.cmake"
  DESTINATION "${package_folder}" COMPONENT development)

# The pages with all that they lead to; pictures without what they are made of. What git ignores, and what tells it so, stays in the tree.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT desk
  PATTERN drawings EXCLUDE)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT desk
  USE_SOURCE_PERMISSIONS
  PATTERN .gitignore EXCLUDE PATTERN __pycache__ EXCLUDE PATTERN failures EXCLUDE PATTERN results.xml EXCLUDE)
set(pages "${CMAKE_INSTALL_DOCDIR}")
if(NOT IS_ABSOLUTE "${pages}")
  string(PREPEND pages "\${CMAKE_INSTALL_PREFIX}/")
endif()
install(CODE "execute_process(COMMAND \"${PROJECT_SOURCE_DIR}/scripts/parts/fit-links\" \"\$ENV{DESTDIR}${pages}\"
  COMMAND_ERROR_IS_FATAL ANY)" COMPONENT desk)
