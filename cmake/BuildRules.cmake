# SPDX-License-Identifier: Apache-2.0
# How every target of this project is built: language level, warnings, sanitizers, places.
option(BUTTONDRIVER_TESTS "Build the tests" ON)
option(BUTTONDRIVER_BENCH "Build the benchmarks" OFF)
option(BUTTONDRIVER_FUZZ "Build the fuzzers, with the tests; takes clang, as the preset fuzz has it" OFF)
option(BUTTONDRIVER_WERROR "Treat compiler warnings as errors" OFF)
set(BUTTONDRIVER_LINKER "" CACHE STRING "A linker as in -fuse-ld=, taken where it is installed, for example gold")
option(BUTTONDRIVER_COVERAGE "Count which lines and branches the tests reach; see scripts/parts/coverage" OFF)
set(BUTTONDRIVER_SANITIZE "" CACHE STRING "Sanitizers, as in -fsanitize=, for example address,undefined")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Type of build" FORCE)
endif()

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# What a program in C has to be linked with beside an archive of ours.
set(BUTTONDRIVER_CXX_RUNTIME ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
list(FILTER BUTTONDRIVER_CXX_RUNTIME INCLUDE REGEX "^(std)?c\\+\\+$")

# On a 32-bit machine files and times would otherwise have 32 bits as well: stat(2) then fails for a file that is dated
# after January 2038. On a 64-bit machine it is so anyway, and the definitions would give some functions other names.
set(BUTTONDRIVER_WIDE_TYPES "")
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(BUTTONDRIVER_WIDE_TYPES _FILE_OFFSET_BITS=64 _TIME_BITS=64)
  add_compile_definitions(${BUTTONDRIVER_WIDE_TYPES})
endif()

if(BUTTONDRIVER_SANITIZE)
  add_compile_options(-fsanitize=${BUTTONDRIVER_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${BUTTONDRIVER_SANITIZE})
endif()
if(BUTTONDRIVER_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

if(BUTTONDRIVER_LINKER)
  include(CheckLinkerFlag)
  check_linker_flag(CXX -fuse-ld=${BUTTONDRIVER_LINKER} BUTTONDRIVER_LINKER_IS_THERE)
  if(BUTTONDRIVER_LINKER_IS_THERE)
    add_link_options(-fuse-ld=${BUTTONDRIVER_LINKER})
  endif()
endif()

# Where include lines start: "panel/leds.h", "protocol/catalogue.h", "bytes/byte_view.h", "simulator/app/options.h".
set(BUTTONDRIVER_INCLUDE_ROOTS
  "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/daemon>" "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/libraries>"
  "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/base>" "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>")

# buttondriver_compile_rules(<target> [GTEST])
#
# To be called when the target is linked. GTEST is for a test program, see buttondriver_precompile().
function(buttondriver_compile_rules target)
  buttondriver_warnings(${target})
  buttondriver_precompile(${target} ${ARGN})
endfunction()

function(buttondriver_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
  if(BUTTONDRIVER_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# buttondriver_library(<name> [QT] SOURCES <files...> [LINK <targets...>])
#
# One room, or a part of one, as the library buttondriver_<name>, alias buttondriver::<name>.
# QT says that its sources hold classes with slots and signals.
function(buttondriver_library name)
  cmake_parse_arguments(PARSE_ARGV 1 room "QT" "" "SOURCES;LINK")
  set(target buttondriver_${name})
  add_library(${target} STATIC ${room_SOURCES})
  add_library(buttondriver::${name} ALIAS ${target})
  target_include_directories(${target} PUBLIC ${BUTTONDRIVER_INCLUDE_ROOTS})
  target_link_libraries(${target} PUBLIC ${room_LINK})
  buttondriver_compile_rules(${target})
  if(room_QT)
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
  endif()
  # Unless a build decides that for itself: after a small change, single sources are quicker.
  if(BUTTONDRIVER_PRECOMPILE AND NOT DEFINED CMAKE_UNITY_BUILD)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  endif()
endfunction()

# buttondriver_program(<name> [COMPONENT <component>] SOURCES <files...> LINK <targets...>)
#
# A program that ends up under bin/ of the build folder and of the installation. There it belongs to what a panel needs
# with COMPONENT daemon, to the bridge with COMPONENT bridge, otherwise to what people at a desk need.
function(buttondriver_program name)
  cmake_parse_arguments(PARSE_ARGV 1 program "" "COMPONENT" "SOURCES;LINK")
  add_executable(${name} ${program_SOURCES})
  target_link_libraries(${name} PRIVATE ${program_LINK})
  target_compile_definitions(${name} PRIVATE BUTTONDRIVER_VERSION="${PROJECT_VERSION}")
  buttondriver_compile_rules(${name})
  if(NOT program_COMPONENT)
    set(program_COMPONENT desk)
  endif()
  install(TARGETS ${name} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ${program_COMPONENT})
endfunction()

# buttondriver_install_component(<name> [C] DESCRIPTION <text> [QT <modules...>] HEADERS <files...>)
#
# Gives the room's library <name> to other programs: as component <name> of the CMake package, as buttondriver_<name> of
# pkg-config, and its public headers as <buttondriver/ROOM/FILE>. QT names the modules that a program has to have for
# it; C says that its headers are for C as well.
function(buttondriver_install_component name)
  cmake_parse_arguments(PARSE_ARGV 1 component "C" "DESCRIPTION" "QT;HEADERS")
  buttondriver_install_archive(${name} ${name})
  buttondriver_install_headers(${component_HEADERS})
  if(NOT component_C)
    target_compile_features(buttondriver_${name} INTERFACE cxx_std_17)
  endif()
  # A public header may hold such a type, as those of stopwatch do.
  target_compile_definitions(buttondriver_${name} INTERFACE ${BUTTONDRIVER_WIDE_TYPES})
  set_property(GLOBAL APPEND PROPERTY BUTTONDRIVER_COMPONENTS ${name})
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME room)
  list(TRANSFORM component_HEADERS PREPEND "${room}/" OUTPUT_VARIABLE headers)
  list(JOIN headers ", " headers)
  set_property(GLOBAL APPEND_STRING PROPERTY BUTTONDRIVER_COMPONENT_ROWS
    "| ${name} | ${component_DESCRIPTION} | ${headers} |\n")
  set_property(GLOBAL PROPERTY BUTTONDRIVER_QT_MODULES_${name} ${component_QT})
  buttondriver_install_pkg_config(${name} "${component_DESCRIPTION}" ${component_QT})
endfunction()

# buttondriver_install_internal(<name>)
#
# A library that components are linked with. Programs do not name it, so it comes without headers.
function(buttondriver_install_internal name)
  buttondriver_install_archive(${name} internal_${name})
endfunction()

# buttondriver_install_headers(<files...>)
#
# Headers of the current room that other public headers include.
function(buttondriver_install_headers)
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME room)
  list(TRANSFORM ARGV PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" OUTPUT_VARIABLE headers)
  set_property(GLOBAL APPEND PROPERTY BUTTONDRIVER_PUBLIC_HEADERS ${headers})
  install(FILES ${ARGV} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/buttondriver/${room}" COMPONENT development)
endfunction()

function(buttondriver_install_archive name export_name)
  set_target_properties(buttondriver_${name} PROPERTIES
    EXPORT_NAME ${export_name} OUTPUT_NAME buttondriver_${export_name})
  install(TARGETS buttondriver_${name} EXPORT buttondriver
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
endfunction()

# Sets <result> to -l for the archive of <target> and for those that it is linked with, each before what it needs: an
# archive does not bring that along.
function(buttondriver_archives target result)
  set(open ${target})
  set(archives "")
  while(open)
    list(POP_FRONT open next)
    get_target_property(file_name ${next} OUTPUT_NAME)
    list(REMOVE_ITEM archives -l${file_name})
    list(APPEND archives -l${file_name})
    get_target_property(linked ${next} LINK_LIBRARIES)
    list(FILTER linked INCLUDE REGEX "^buttondriver::")
    list(APPEND open ${linked})
  endwhile()
  set(${result} ${archives} PARENT_SCOPE)
endfunction()

# There are static archives only, which pkg-config is asked for without --static: so Qt stands in Requires, and not in
# Requires.private.
function(buttondriver_install_pkg_config name description)
  buttondriver_archives(buttondriver_${name} libraries)
  set(definitions ${BUTTONDRIVER_WIDE_TYPES})
  list(TRANSFORM definitions PREPEND "-D")
  set(required "")
  if(ARGN)
    string(REGEX MATCH "^[0-9]+\\.[0-9]+" version "${${QT_IN_USE}_VERSION}")
    list(TRANSFORM ARGN PREPEND "${QT_IN_USE}" OUTPUT_VARIABLE required)
    list(TRANSFORM required APPEND " >= ${version}")
    list(JOIN required ", " required)
    set(required "Requires: ${required}\n")
    # CMake's targets of Qt ask for it, its files for pkg-config do not.
    list(APPEND definitions -fPIC)
  endif()
  list(TRANSFORM definitions PREPEND " ")
  list(JOIN definitions "" definitions)
  list(TRANSFORM BUTTONDRIVER_CXX_RUNTIME PREPEND "-l" OUTPUT_VARIABLE runtime)
  list(APPEND libraries ${runtime})
  list(JOIN libraries " " libraries)
  set(folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
  file(RELATIVE_PATH prefix "${CMAKE_INSTALL_PREFIX}/${folder}" "${CMAKE_INSTALL_PREFIX}")
  string(REGEX REPLACE "/$" "" prefix "${prefix}")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/component.pc.in" "${PROJECT_BINARY_DIR}/buttondriver_${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/buttondriver_${name}.pc" DESTINATION "${folder}" COMPONENT development)
endfunction()
