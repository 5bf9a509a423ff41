// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/run_command.h"

#include "buttonctl/commands/command_line.h"
#include "buttonctl/support/parsed_arguments.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

ScenarioPlan plan_of(const QStringList &words, const Outcome<QString> &panel = default_panel_url()) {
  const CommandTable nothing;
  test::ParsedArguments arguments(run_command(), words);
  return read_scenario_plan(arguments.reader(), {Endpoint(), false, nothing, panel});
}

TEST(RunCommandTest, takes_a_file_and_where_the_panel_answers) {
  const ScenarioPlan plan = plan_of({"a.scenario", "--update"}, QStringLiteral("http://panel:81"));
  EXPECT_EQ(plan.files, QStringList{"a.scenario"});
  EXPECT_EQ(plan.panel_url.toStdString(), "http://panel:81");
  EXPECT_TRUE(plan.update);
  EXPECT_EQ(plan_of({"a.scenario"}).panel_url.toStdString(), "http://127.0.0.1:8080");
  EXPECT_FALSE(plan_of({"a.scenario"}).update);
}

TEST(RunCommandTest, bad_arguments_are_refused_with_the_reason) {
  struct Row {
    QStringList arguments;
    const char *text;
  };
  const Row rows[] = {
      {{"run"}, "run: FILE is missing; see 'buttonctl run --help'"},
      {{"run", "a", "--panel", "ftp://x"}, "run: --panel must be http://HOST:PORT, not 'ftp://x'"},
      {{"run", "a", "--panel", "127.0.0.1:8080"}, "run: --panel must be http://HOST:PORT, not '127.0.0.1:8080'"},
      {{"run", "a", "--panel", "http://x/y"}, "run: --panel must be http://HOST:PORT, not 'http://x/y'"},
      {{"run", "-", "a", "-"}, "run: standard input can only be read once"},
      {{"run", "a", "--output="}, "run: --output must not be empty"},
      {{"run", "a", "--update", "-n"}, "run: use only one of --update and --dry-run"},
  };
  for (const Row &row : rows) {
    const Outcome<Action> action = parse_command_line({run_command()}, row.arguments);
    ASSERT_FALSE(action) << row.text;
    EXPECT_EQ(action.failure().text.toStdString(), row.text);
  }
}

} // namespace
} // namespace buttondriver::buttonctl
