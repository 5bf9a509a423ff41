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

# The pages.
file(GLOB pages CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/*.md")
install(FILES ${pages} DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT desk)
