# SPDX-License-Identifier: Apache-2.0
# Finds the one Qt that the whole build uses: Qt 6 where there is a choice, Qt 5.15 on older SDKs.
set(BUTTONDRIVER_QT "" CACHE STRING "Major version of Qt: 6, 5, or empty for the newest one installed")
set_property(CACHE BUTTONDRIVER_QT PROPERTY STRINGS "" 6 5)

set(buttondriver_qt_components Core Network Gui)
if(BUTTONDRIVER_QT STREQUAL "")
  find_package(QT NAMES Qt6 Qt5 REQUIRED COMPONENTS ${buttondriver_qt_components})
else()
  set(QT_VERSION_MAJOR ${BUTTONDRIVER_QT})
endif()
set(QT_IN_USE Qt${QT_VERSION_MAJOR})
find_package(${QT_IN_USE} 5.15 REQUIRED COMPONENTS ${buttondriver_qt_components})
message(STATUS "buttondriver is built with Qt ${${QT_IN_USE}_VERSION}")
