// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/doctor_command.h"

#include "buttonctl/commands/command_line.h"
#include "buttonctl/support/parsed_arguments.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

Examination examination_of(const QStringList &words) {
  const CommandTable nothing;
  test::ParsedArguments arguments(doctor_command(), words);
  return read_examination(arguments.reader(), {Endpoint(), false, nothing});
}

TEST(DoctorCommandTest, takes_a_root_a_user_and_whether_the_panel_is_virtual) {
  const Examination examination = examination_of({"--root", "x", "--virtual", "--user", "y"});
  EXPECT_EQ(examination.root.toStdString(), "x");
  EXPECT_EQ(examination.user.toStdString(), "y");
  EXPECT_TRUE(examination.is_virtual);
  EXPECT_TRUE(examination_of({}).root.isEmpty());
  EXPECT_TRUE(examination_of({}).user.isEmpty());
  EXPECT_FALSE(examination_of({}).is_virtual);
}

TEST(DoctorCommandTest, bad_arguments_are_refused_with_the_reason) {
  struct Row {
    QStringList arguments;
    const char *text;
  };
  const Row rows[] = {
      {{"doctor", "x"}, "doctor: 'x' is one argument too many; see 'buttonctl doctor --help'"},
      {{"doctor", "-n"}, "doctor: there is nothing to print with --dry-run"},
  };
  for (const Row &row : rows) {
    const Outcome<Action> action = parse_command_line({doctor_command()}, row.arguments);
    ASSERT_FALSE(action) << row.text;
    EXPECT_EQ(action.failure().text.toStdString(), row.text);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
