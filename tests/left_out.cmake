# SPDX-License-Identifier: Apache-2.0
# What is not tested in a build for another machine, and why: all of it, in one place. Each line is told as a test that
# was skipped.
include_guard(GLOBAL)

# Folders below tests/ and bench/ that are not even built.
set(left_out_folders
  "bench: times and counted instructions would be the emulator's"
  "package: other projects use the installed package with this machine's compilers"
  "python: the package is the same, and what it talks to is tested"
  "scripts: looks at the sources, which are the same"
  "soak: memory and load would be the emulator's"
  "web: the page is the same, and its server is tested")

# Single tests, by their names.
set(itself "GoogleTest would have to start this program again, which takes the emulator")
set(left_out_tests
  "event_client.EventClientMessagesTest.text_for_which_there_is_no_memory_is_not_sent: the emulator has no limit of memory"
  "logging.Each/LogGatheringEndTest.writes_what_is_there/exit: ${itself}"
  "logging.Each/LogGatheringEndTest.writes_what_is_there/qFatal: ${itself}"
  "logging.Each/LogGatheringEndTest.writes_what_is_there/terminate: ${itself}"
  "stand_in.StandInTest.everything_else_goes_on_to_the_system: the emulator answers requests that it does not know itself"
  "unixsignalhandler.UnixSignalHandlerDeathTest.a_signal_before_the_first_bridge_is_harmless: ${itself}"
  "buttonctl_documents.completion_offers_what_it_should: asks a shell of this machine"
  "dissector.shows_what_is_in_a_capture: asks a program of this machine"
  "stand_in.serves_a_program_of_a_32_bit_machine: the tests of device do that with this build's programs")

# buttondriver_tests_below(<folder>)
#
# add_subdirectory(), unless the folder is left out here.
function(buttondriver_tests_below folder)
  if(CMAKE_CROSSCOMPILING)
    foreach(line IN LISTS left_out_folders)
      if(line MATCHES "^${folder}: ")
        return()
      endif()
    endforeach()
  endif()
  add_subdirectory(${folder})
endfunction()

# Tells what is left out, and has ctest leave the single tests out.
function(buttondriver_tell_what_is_left_out)
  if(NOT CMAKE_CROSSCOMPILING)
    return()
  endif()
  set(names "")
  foreach(line IN LISTS left_out_folders left_out_tests)
    string(REGEX MATCH "^([^:]*): (.*)$" match "${line}")
    add_test(NAME left_out.${CMAKE_MATCH_1} COMMAND "${CMAKE_COMMAND}" -E echo "left out: ${CMAKE_MATCH_2}")
    set_tests_properties(left_out.${CMAKE_MATCH_1} PROPERTIES SKIP_REGULAR_EXPRESSION "^left out: ")
    list(APPEND names "${CMAKE_MATCH_1}")
  endforeach()
  list(JOIN names "\" \"" names)
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/CTestCustom.cmake" CONTENT "set(CTEST_CUSTOM_TESTS_IGNORE \"@names@\")\n" @ONLY)
endfunction()
