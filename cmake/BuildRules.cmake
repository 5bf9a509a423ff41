# How every target of this project is built: language level, warnings, sanitizers, places.
option(BUTTONDRIVER_TESTS "Build the tests" ON)
option(BUTTONDRIVER_BENCH "Build the benchmarks" OFF)
option(BUTTONDRIVER_FUZZ "Build the fuzzers, with the tests; takes clang, as the preset fuzz has it" OFF)
option(BUTTONDRIVER_WERROR "Treat compiler warnings as errors" OFF)
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

if(BUTTONDRIVER_SANITIZE)
  add_compile_options(-fsanitize=${BUTTONDRIVER_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${BUTTONDRIVER_SANITIZE})
endif()

function(buttondriver_compile_rules target)
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
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>")
  target_link_libraries(${target} PUBLIC ${room_LINK})
  buttondriver_compile_rules(${target})
  if(room_QT)
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
  endif()
endfunction()

# buttondriver_program(<name> SOURCES <files...> LINK <targets...>)
#
# A program that ends up under bin/ of the build folder and of the installation.
function(buttondriver_program name)
  cmake_parse_arguments(PARSE_ARGV 1 program "" "" "SOURCES;LINK")
  add_executable(${name} ${program_SOURCES})
  target_link_libraries(${name} PRIVATE ${program_LINK})
  target_compile_definitions(${name} PRIVATE BUTTONDRIVER_VERSION="${PROJECT_VERSION}")
  buttondriver_compile_rules(${name})
  install(TARGETS ${name} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endfunction()
