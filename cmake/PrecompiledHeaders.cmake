# SPDX-License-Identifier: Apache-2.0
# Two thirds of the time that a build takes go into reading the same headers of Qt, GoogleTest and the C++ library again.
# Where this is on, they are read once, and the sources of a room are compiled several at a time: names in their nameless
# namespaces must differ. A source that forgets one of these includes then compiles all the same; the builds where it is
# off find that.
option(BUTTONDRIVER_PRECOMPILE "Read the headers that most sources include only once; for a quick build from scratch" OFF)
option(BUTTONDRIVER_PRECOMPILE_TESTS "The same for test programs, which are two thirds of a build" ${BUTTONDRIVER_PRECOMPILE})

set(precompiled_of_cxx
  <algorithm> <array> <chrono> <cstdint> <fstream> <functional> <map> <memory> <optional> <sstream> <string>
  <string_view> <thread> <vector>)
set(precompiled_of_qt
  <QByteArray> <QCoreApplication> <QDir> <QFile> <QHostAddress> <QObject> <QString> <QStringList> <QTcpServer>
  <QTcpSocket> <QTimer>)
set(precompiled_of_gtest <gmock/gmock.h>)

# buttondriver_precompile(<target> [GTEST])
#
# Gives a target of C++ sources what fits what it is linked with so far: headers of Qt only where that is Qt as well.
# GTEST is for a test program, whose own sources are not optimised.
function(buttondriver_precompile target)
  if("GTEST" IN_LIST ARGN)
    set(is_wanted ${BUTTONDRIVER_PRECOMPILE_TESTS})
  else()
    set(is_wanted ${BUTTONDRIVER_PRECOMPILE})
  endif()
  if(NOT is_wanted)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  if(sources MATCHES "\\.c(;|$)")
    return()
  endif()
  set(parts cxx)
  buttondriver_uses_qt(${target} uses_qt)
  if(uses_qt)
    list(APPEND parts qt)
  endif()
  if("GTEST" IN_LIST ARGN)
    list(APPEND parts gtest)
  endif()
  list(JOIN parts "_" name)
  buttondriver_precompiled_headers(buttondriver_headers_${name} ${parts})
  # What is precompiled goes with the same kind of code only, and Qt asks for this kind.
  target_compile_options(${target} PRIVATE -fPIC)
  target_precompile_headers(${target} REUSE_FROM buttondriver_headers_${name})
endfunction()

# Makes the library <name> that holds the headers of the parts, unless it is there.
function(buttondriver_precompiled_headers name)
  if(TARGET ${name})
    return()
  endif()
  set(empty "${PROJECT_BINARY_DIR}/precompiled/${name}.cpp")
  file(CONFIGURE OUTPUT "${empty}" CONTENT "")
  add_library(${name} OBJECT EXCLUDE_FROM_ALL "${empty}")
  set_target_properties(${name} PROPERTIES AUTOMOC OFF)
  buttondriver_warnings(${name})
  foreach(part IN LISTS ARGN)
    target_precompile_headers(${name} PRIVATE ${precompiled_of_${part}})
  endforeach()
  if("qt" IN_LIST ARGN)
    # Not linked with Network: what that defines would have to be defined in all users as well.
    target_link_libraries(${name} PRIVATE ${QT_IN_USE}::Core)
    target_include_directories(${name} SYSTEM PRIVATE
      $<TARGET_PROPERTY:${QT_IN_USE}::Network,INTERFACE_INCLUDE_DIRECTORIES>)
  endif()
  if("gtest" IN_LIST ARGN)
    target_link_libraries(${name} PRIVATE GTest::gmock)
    target_compile_options(${name} PRIVATE -O0)
  endif()
endfunction()

# Whether a target is linked with Qt, itself or through others.
function(buttondriver_uses_qt target result)
  set(open ${target})
  set(seen "")
  while(open)
    list(POP_FRONT open next)
    if(next MATCHES "^${QT_IN_USE}::")
      set(${result} TRUE PARENT_SCOPE)
      return()
    endif()
    if(next IN_LIST seen OR NOT TARGET "${next}")
      continue()
    endif()
    list(APPEND seen ${next})
    foreach(property LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
      get_target_property(linked ${next} ${property})
      if(linked)
        list(APPEND open ${linked})
      endif()
    endforeach()
  endwhile()
  set(${result} FALSE PARENT_SCOPE)
endfunction()
