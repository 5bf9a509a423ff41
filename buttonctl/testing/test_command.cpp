// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/testing/test_command.h"

#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"
#include "buttonctl/testing/results/junit_report.h"
#include "buttonctl/testing/scenario_files.h"
#include "buttonctl/testing/scenario_tests.h"
#include "buttonctl/testing/simulator_program.h"
#include "unixsignalhandler/unix_signal_handler.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>
#include <QThread>

#include <csignal>

namespace buttondriver::buttonctl {

namespace {

constexpr int most_jobs = 256;
constexpr int longest_limit_s = 86400;
constexpr int default_limit_s = 60;
const QString default_output = QStringLiteral("buttonctl-test");

/// As a shell tells that a signal has ended a program.
constexpr int status_of_signal(int signal) { return 128 + signal; }

int write_junit(const QString &name, const std::vector<TestResult> &results) {
  QSaveFile file(name);
  const QByteArray content = junit_report(results);
  if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
    return report(Failure{QStringLiteral("test: cannot write '%1': %2").arg(name, file.errorString())}, exit_bad_usage);
  return exit_done;
}

int test(TestPlan plan, const CommandTable &commands) {
  const auto files = scenario_files(plan.places);
  if (!files)
    return report(Failure{QStringLiteral("test: ") + files.failure().text}, exit_bad_usage);
  const auto simulator = simulator_program(plan.simulator);
  if (!simulator)
    return report(Failure{QStringLiteral("test: ") + simulator.failure().text}, exit_bad_usage);
  plan.simulator = *simulator;

  const unixsignalhandler::UnixSignalHandler signal_bridge;
  using Handler = unixsignalhandler::UnixSignalHandler;
  Handler::installSignalHandler(SIGINT, [] { QCoreApplication::exit(status_of_signal(SIGINT)); });
  Handler::installSignalHandler(SIGTERM, [] { QCoreApplication::exit(status_of_signal(SIGTERM)); });
  Handler::installSignalHandler(SIGHUP, [] { QCoreApplication::exit(status_of_signal(SIGHUP)); });
  // It ends all that it has started when it goes.
  ScenarioTests tests(plan, commands, *files);
  QTimer::singleShot(0, [&tests] { tests.start([] { QCoreApplication::exit(exit_done); }); });
  if (const int status = QCoreApplication::exec(); status != exit_done)
    return status;

  print_line(tests.summary());
  QDir().rmdir(plan.output); // Only when nothing was left in it.
  if (!plan.junit.isEmpty())
    if (const int status = write_junit(plan.junit, tests.results()); status != exit_done)
      return status;
  return tests.hasFailures() ? exit_differs : exit_done;
}

Action build_test(ArgumentReader &arguments, const CommandContext &context) {
  return [plan = read_test_plan(arguments, context), &commands = context.commands] { return test(plan, commands); };
}

} // namespace

TestPlan read_test_plan(ArgumentReader &arguments, const CommandContext &context) {
  refuse_dry_run(arguments, context);
  TestPlan plan;
  plan.places += arguments.word("FILE");
  while (!arguments.atEnd())
    plan.places += arguments.word("FILE");
  plan.simulator = arguments.option("simulator");
  plan.client = arguments.option("client");
  plan.junit = arguments.option("junit");
  plan.output = arguments.hasOption("output") ? arguments.option("output") : default_output;
  for (const char *option : {"simulator", "client", "junit", "output"})
    if (arguments.hasOption(option) && arguments.option(option).isEmpty())
      arguments.fail(QStringLiteral("--%1 must not be empty").arg(QLatin1String(option)));
  plan.jobs = arguments.optionNumber("jobs", 1, most_jobs, QThread::idealThreadCount());
  plan.limit_ms = 1000 * arguments.optionNumber("limit", 1, longest_limit_s, default_limit_s);
  plan.timeout_ms = context.endpoint.timeout_ms;
  return plan;
}

Command test_command() {
  return {
      "test",
      "DIR|FILE...",
      "run scenarios, each against a virtual panel of its own",
      QStringLiteral(
          "Each FILE, and each *.scenario in a DIR and below it, is run as by 'run', against a virtual panel\n"
          "that is started for it and ended after it; several at once. One that fails ends no other.\n"
          "--host, --port and --panel play no part. There is a line for each scenario, in the order of the\n"
          "files, and one for all of them:\n"
          "\n"
          "  tests/start.scenario: ok 12 expectations\n"
          "  tests/stop.scenario: FAILED line 14: expect-led: after 3000 ms, LED 5 is off, not on\n"
          "    in buttonctl-test/tests-stop: daemon.log, panel.png\n"
          "  2 scenarios, 15 expectations, 1 failed\n"
          "\n"
          "The client of --client is started for each scenario and ended after it. In its environment are\n"
          "BUTTONDRIVER_HOST and BUTTONDRIVER_PORT, where the daemon is, BUTTONDRIVER_PANEL, the virtual\n"
          "panel's address, and BUTTONDRIVER_SCENARIO, the file. Exit status: 0 all as expected, 2 the\n"
          "command line is wrong, 3 a scenario has failed. No process is left, also after ctrl-C.\n"),
      "buttonctl test tests\n"
      "buttonctl test tests --junit results.xml --jobs 4 --client './my-client --quiet'\n"
      "buttonctl test one.scenario --simulator /opt/buttondriver/bin/buttondriver-sim\n",
      {{"client", "COMMAND", "a program under test, as a line for the shell"},
       {"jobs", "N", "so many scenarios at once, 1 to 256 (default: the number of processors)"},
       {"junit", "FILE", "write the results there, as JUnit XML"},
       {"limit", "SECONDS", "end a scenario after this time, 1 to 86400 (default 60); --timeout is an expectation's"},
       {"output", "DIR", "folder for logs and pictures of failures (default buttonctl-test)"},
       {"simulator", "PROGRAM", "the virtual panel (default: the buttondriver-sim beside this program, or in PATH)"}},
      build_test};
}

} // namespace buttondriver::buttonctl
