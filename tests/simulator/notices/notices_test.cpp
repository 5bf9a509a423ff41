// SPDX-License-Identifier: Apache-2.0
#include "simulator/notices/notices.h"

#include "logging/standard_output.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <unistd.h>

namespace buttondriver::simulator {
namespace {

class NoticesTest : public testing::Test {
protected:
  ~NoticesTest() override { choose_notices(Notices::usual); }

  static void tellAll() {
    tell("port %u\n", 3003U);
    tell_detail("font %s\n", "8x16");
    tell_fault("no file %d\n", 7);
  }
};

TEST_F(NoticesTest, what_is_chosen_is_told_and_faults_always) {
  struct Row {
    Notices chosen;
    const char *output;
  };
  for (const Row &row :
       {Row{Notices::faults, ""}, Row{Notices::usual, "port 3003\n"}, Row{Notices::all, "port 3003\nfont 8x16\n"}}) {
    choose_notices(row.chosen);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    tellAll();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), row.output);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "no file 7\n");
  }
}

/// In a process of its own, whose channels go elsewhere for good.
[[noreturn]] void log_elsewhere(const std::string &file) {
  if (move_log(file.c_str()) != 0)
    std::_Exit(1);
  print("a line of the log\n");
  print_error("and another one\n");
  tell("to standard output\n");
  tell_fault("to standard error\n");
  std::_Exit(0);
}

TEST_F(NoticesTest, go_where_they_went_before_when_the_log_goes_elsewhere) {
  const test::TemporaryFolder folder;
  const std::string file = folder.write("log", "of an earlier run\n");
  testing::internal::CaptureStdout();
  EXPECT_EXIT(log_elsewhere(file), testing::ExitedWithCode(0), "^to standard error\n$");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "to standard output\n");
  EXPECT_EQ(test::read_file(file), "a line of the log\nand another one\n");
}

/// As after `>&-` in a shell: the log's file gets the place of standard output.
[[noreturn]] void log_without_output(const std::string &file) {
  ::close(STDOUT_FILENO);
  log_elsewhere(file);
}

TEST_F(NoticesTest, of_a_program_without_standard_output_are_lost_and_the_log_is_not) {
  const test::TemporaryFolder folder;
  const std::string file = folder.path("log");
  EXPECT_EXIT(log_without_output(file), testing::ExitedWithCode(0), "^to standard error\n$");
  EXPECT_EQ(test::read_file(file), "a line of the log\nand another one\n");
}

TEST_F(NoticesTest, a_log_that_cannot_be_opened_changes_nothing) {
  const test::TemporaryFolder folder;
  errno = 0;
  EXPECT_EQ(move_log(folder.path("nowhere/log").c_str()), -1);
  EXPECT_EQ(errno, ENOENT);
  testing::internal::CaptureStdout();
  print("still here\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "still here\n");
}

} // namespace
} // namespace buttondriver::simulator
