// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/run_command.h"

#include "buttonctl/scenario/scenario_reader.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <QFileInfo>

namespace buttondriver::buttonctl {

namespace {

Action build_run(ArgumentReader &arguments, const CommandContext &context) {
  return [plan = read_scenario_plan(arguments, context), context] {
    const auto lines = read_scenario(context.commands, plan.file, plan.update);
    if (!lines)
      return report(lines.failure(), exit_bad_usage);
    return ScenarioRunner(plan).run(*lines);
  };
}

} // namespace

ScenarioPlan read_scenario_plan(ArgumentReader &arguments, const CommandContext &context) {
  const QString file = arguments.word("FILE");
  ScenarioPlan plan{file,
                    QFileInfo(file).path(),
                    panel_of(arguments, context),
                    arguments.hasOption("update"),
                    context.endpoint,
                    context.dry_run};
  if (arguments.hasOption("output"))
    plan.output = arguments.option("output");
  if (plan.output.isEmpty())
    arguments.fail(QStringLiteral("--output must not be empty"));
  if (plan.update && plan.dry_run)
    arguments.fail(QStringLiteral("use only one of --update and --dry-run"));
  return plan;
}

Command run_command() {
  return {"run",
          "FILE",
          "run a scenario and compare what the virtual panel shows",
          QStringLiteral(
              "There is one command or expectation on each line, commands as in a batch. An expectation is asked\n"
              "of the virtual panel until it is true, at most for the time of --timeout:\n"
              "\n"
              "  expect-screen SCREEN FILE.png\n"
              "  expect-led BUTTON on|off|blinking [MS]\n"
              "  expect-status ID on|off\n"
              "  expect-toggle ID on|off\n"
              "  expect-intensity LEVEL\n"
              "  expect-text SCREEN LINE TEXT\n"
              "\n"
              "Exit status: 0 all as expected, 3 a picture differs or is missing, 4 another expectation did not\n"
              "come true in time. The first that fails ends the scenario.\n"),
          "buttonctl run scenarios/01-first.scenario\n"
          "buttonctl run first.scenario --panel http://127.0.0.1:8081 --timeout 500\n"
          "buttonctl run first.scenario --update\n",
          {{"output", "DIR", "folder for difference pictures, made when it is not there (default: the scenario's)"},
           {"update", nullptr, "write what the screens show as the expected pictures"}},
          build_run};
}

} // namespace buttondriver::buttonctl
