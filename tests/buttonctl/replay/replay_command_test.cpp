// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/replay/replay_command.h"

#include "buttonctl/commands/command_line.h"
#include "buttonctl/support/parsed_arguments.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

ReplayPlan plan_of(const QStringList &words) {
  const CommandTable nothing;
  test::ParsedArguments arguments(replay_command(), words);
  return read_replay_plan(arguments.reader(), {Endpoint(), true, nothing});
}

TEST(ReplayCommandTest, takes_a_file_and_a_speed) {
  const ReplayPlan plan = plan_of({"a.rec", "--speed", "0.5"});
  EXPECT_EQ(plan.file.toStdString(), "a.rec");
  EXPECT_EQ(plan.speed, 0.5);
  EXPECT_TRUE(plan.dry_run);
  EXPECT_EQ(plan_of({"a.rec"}).speed, 1);
}

TEST(ReplayCommandTest, bad_arguments_are_refused_with_the_reason) {
  struct Row {
    QStringList arguments;
    const char *text;
  };
  const Row rows[] = {
      {{"replay"}, "replay: FILE is missing; see 'buttonctl replay --help'"},
      {{"replay", "a.rec", "--speed", "0"}, "replay: --speed must be a number from 0.001 to 1000000, not '0'"},
      {{"replay", "a.rec", "--speed", "nan"}, "replay: --speed must be a number from 0.001 to 1000000, not 'nan'"},
      {{"replay", "a.rec", "--speed", "fast"}, "replay: --speed must be a number from 0.001 to 1000000, not 'fast'"},
  };
  for (const Row &row : rows) {
    const Outcome<Action> action = parse_command_line({replay_command()}, row.arguments);
    ASSERT_FALSE(action) << row.text;
    EXPECT_EQ(action.failure().text.toStdString(), row.text);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
