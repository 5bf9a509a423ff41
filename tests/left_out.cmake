# SPDX-License-Identifier: Apache-2.0
# What some builds do not test, and why: all of it, in one place. Each line is told as a test that was skipped.
include_guard(GLOBAL)

# Folders below tests/ and bench/ that are not even built. The build with Qt 6 and without a sanitizer has them all.
set(left_out_folders "")
if(CMAKE_CROSSCOMPILING)
  set(left_out_folders
    "bench: times and counted instructions would be the emulator's"
    "documents: what the pages say is tried with this machine's programs"
    "package: other projects use the installed package with this machine's compilers"
    "python: the package is the same, and what it talks to is tested"
    "scripts: looks at the sources, which are the same"
    "soak: memory and load would be the emulator's"
    "web: the page is the same, and its server is tested")
elseif(BUTTONDRIVER_SANITIZE)
  set(left_out_folders
    "bench: times and counted instructions would be the sanitizer's"
    "package: what is installed has no sanitizer"
    "scripts: looks at the sources, which are the same"
    "web: the page is the same, and its server is tested")
elseif(NOT QT_IN_USE STREQUAL "Qt6")
  set(left_out_folders
    "scripts: looks at the sources, which are the same")
endif()

# Single tests that the emulator cannot run, by their names.
set(itself "GoogleTest would have to start this program again, which takes the emulator")
set(left_out_tests
  "event_client.EventClientMessagesTest.text_for_which_there_is_no_memory_is_not_sent: the emulator has no limit of memory"
  "logging.Each/LogGatheringEndTest.writes_what_is_there/exit: ${itself}"
  "logging.Each/LogGatheringEndTest.writes_what_is_there/qFatal: ${itself}"
  "logging.Each/LogGatheringEndTest.writes_what_is_there/terminate: ${itself}"
  "stand_in.StandInTest.everything_else_goes_on_to_the_system: the emulator answers requests that it does not know itself"
  "unixsignalhandler.UnixSignalHandlerDeathTest.a_signal_before_the_first_bridge_is_harmless: ${itself}"
  "buttonctl_documents.completion_in_zsh_offers_what_it_should: asks a shell of this machine"
  "buttonctl_documents.completion_offers_what_it_should: asks a shell of this machine"
  "simulator_app.completion_in_zsh_offers_what_it_should: asks a shell of this machine"
  "simulator_app.completion_offers_what_it_should: asks a shell of this machine"
  "dissector.shows_what_is_in_a_capture: asks a program of this machine"
  "stand_in.serves_a_program_of_a_32_bit_machine: the tests of device do that with this build's programs")
foreach(test
    simulation.ListeningProgramOfThisMachineTest.is_this_test
    blackbox.SimulatorProgramTest.a_port_that_is_taken_is_one_line_with_who_has_it_and_exit_status_1)
  list(APPEND left_out_tests "${test}: each program here has the emulator's name")
endforeach()
foreach(test
    ExpectationsTest.of_pixels_are_about_the_place_and_the_colour
    ExpectationsTest.of_a_region_compare_a_part_of_the_screen_with_a_tolerance
    ExpectationsTest.of_the_log_find_a_text_and_faults
    ExpectationsTest.of_messages_compare_names_and_fields
    ExpectationsTest.wait_until_several_are_true_at_once
    ExpectationsTest.reset_puts_the_panel_back_after_what_was_sent_before
    ExpectationsTest.sleep_lets_time_pass
    TestCommandTest.tells_of_each_scenario_in_the_order_of_the_files_and_of_all
    TestCommandTest.leaves_nothing_when_all_is_as_expected
    TestCommandTest.gives_its_client_the_panel_and_keeps_what_it_prints
    TestCommandTest.keeps_the_difference_picture_of_a_failure
    TestCommandTest.a_simulator_that_does_not_start_is_a_failure_that_says_so
    TestCommandTest.ends_what_hangs_with_all_that_it_has_started
    TestCommandTest.a_signal_ends_it_with_all_that_it_has_started
    TestCommandTest.writes_results_that_a_reader_of_junit_understands)
  list(APPEND left_out_tests "buttonctl.${test}: buttonctl cannot start programs under the emulator, which refuses its way to")
endforeach()

# buttondriver_is_left_out(<folder> <variable>)
function(buttondriver_is_left_out folder result)
  set(found FALSE)
  foreach(line IN LISTS left_out_folders)
    if(line MATCHES "^${folder}: ")
      set(found TRUE)
    endif()
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

# buttondriver_tests_below(<folder>)
#
# add_subdirectory(), unless the folder is left out here.
function(buttondriver_tests_below folder)
  buttondriver_is_left_out(${folder} is_left_out)
  if(NOT is_left_out)
    add_subdirectory(${folder})
  endif()
endfunction()

# Tells what is left out, and has ctest leave the single tests out.
function(buttondriver_tell_what_is_left_out)
  set(lines ${left_out_folders})
  if(CMAKE_CROSSCOMPILING)
    list(APPEND lines ${left_out_tests})
  endif()
  set(names "")
  foreach(line IN LISTS lines)
    string(REGEX MATCH "^([^:]*): (.*)$" match "${line}")
    add_test(NAME left_out.${CMAKE_MATCH_1} COMMAND "${CMAKE_COMMAND}" -E echo "left out: ${CMAKE_MATCH_2}")
    set_tests_properties(left_out.${CMAKE_MATCH_1} PROPERTIES SKIP_REGULAR_EXPRESSION "^left out: ")
    list(APPEND names "${CMAKE_MATCH_1}")
  endforeach()
  list(JOIN names "\" \"" names)
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/CTestCustom.cmake" CONTENT "set(CTEST_CUSTOM_TESTS_IGNORE \"@names@\")\n" @ONLY)
endfunction()
