// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/run_command.h"

#include "buttonctl/scenario/scenario_reader.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <utility>

namespace buttondriver::buttonctl {

namespace {

/// All are read before anything is sent. They share a panel, so that none can be trusted after one that failed.
int run_scenarios(const ScenarioPlan &plan, const CommandContext &context) {
  std::vector<std::vector<ScenarioLine>> scenarios;
  for (const QString &file : plan.files) {
    auto lines = read_scenario(context.commands, file, plan.update);
    if (!lines)
      return report(lines.failure(), exit_bad_usage);
    scenarios.push_back(std::move(*lines));
  }
  for (std::size_t i = 0; i < scenarios.size(); ++i) {
    ScenarioPlan single = plan;
    if (plan.output.isEmpty())
      single.output = folder_of_scenario(plan.files[static_cast<int>(i)]);
    if (const int status = ScenarioRunner(single).run(scenarios[i]); status != exit_done)
      return status;
  }
  return exit_done;
}

Action build_run(ArgumentReader &arguments, const CommandContext &context) {
  return [plan = read_scenario_plan(arguments, context), context] { return run_scenarios(plan, context); };
}

} // namespace

ScenarioPlan read_scenario_plan(ArgumentReader &arguments, const CommandContext &context) {
  QStringList files(arguments.word("FILE"));
  while (!arguments.atEnd())
    files += arguments.word("FILE");
  if (files.count(standard_input_name) > 1)
    arguments.fail(QStringLiteral("standard input can only be read once"));
  ScenarioPlan plan{
      files, QString(), panel_of(arguments, context), arguments.hasOption("update"), context.endpoint, context.dry_run};
  plan.output = arguments.option("output");
  if (arguments.hasOption("output") && plan.output.isEmpty())
    arguments.fail(QStringLiteral("--output must not be empty"));
  if (plan.update && plan.dry_run)
    arguments.fail(QStringLiteral("use only one of --update and --dry-run"));
  return plan;
}

Command run_command() {
  return {"run",
          "FILE...",
          "run scenarios and compare what the virtual panel shows",
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
              "  expect-pixel SCREEN X Y RRGGBB\n"
              "  expect-region SCREEN X Y W H FILE.png [TOLERANCE]\n"
              "  expect-log TEXT\n"
              "  expect-no-error\n"
              "  expect-message NAME [FIELD=VALUE]...\n"
              "  wait-until EXPECTATION [and EXPECTATION]... [within MS]\n"
              "  reset\n"
              "\n"
              "Exit status: 0 all as expected, 3 a picture differs or is missing, 4 another expectation did not\n"
              "come true in time. The first that fails ends the run. Of several scenarios each goes on where the\n"
              "one before has left the panel; all are checked before anything is sent. With - a scenario comes\n"
              "from standard input; its files are relative to the current folder.\n"),
          "buttonctl run scenarios/01-first.scenario\n"
          "buttonctl run first.scenario --panel http://127.0.0.1:8081 --timeout 500\n"
          "buttonctl run first.scenario --update\n"
          "buttonctl run start.scenario stop.scenario\n"
          "echo 'expect-led 5 on' | buttonctl run -\n",
          {{"output", "DIR", "folder for difference pictures, made when it is not there (default: the scenario's)"},
           {"update", nullptr, "write what the screens show as the expected pictures"}},
          build_run};
}

} // namespace buttondriver::buttonctl
