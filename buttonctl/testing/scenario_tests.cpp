// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/testing/scenario_tests.h"

#include "buttonctl/scenario/scenario_reader.h"
#include "buttonctl/session/console.h"
#include "buttonctl/testing/results/failure_text.h"
#include "buttonctl/testing/scenario_files.h"

#include <algorithm>
#include <utility>

namespace buttondriver::buttonctl {

namespace {

/// "1 scenario", "2 scenarios"
QString counted(std::size_t number, const char *what) {
  return QStringLiteral("%1 %2%3").arg(number).arg(QLatin1String(what), QLatin1String(number == 1 ? "" : "s"));
}

void print_result(const TestResult &result) {
  if (!result.failure) {
    print_line(
        QStringLiteral("%1: ok %2")
            .arg(as_one_line(result.file), counted(static_cast<std::size_t>(result.expectations), "expectation")));
    return;
  }
  print_line(QStringLiteral("%1: FAILED %2").arg(as_one_line(result.file), as_one_line(*result.failure)));
  if (!result.kept.isEmpty())
    print_line(as_one_line(QStringLiteral("  in %1: %2").arg(result.folder, result.kept.join(QLatin1String(", ")))));
}

} // namespace

ScenarioTests::ScenarioTests(const TestPlan &plan, const CommandTable &commands, const QStringList &files)
    : _plan(plan), _commands(commands) {
  const QStringList folders = folder_names(files);
  for (int index = 0; index < files.size(); ++index) {
    TestResult result;
    result.file = files[index];
    result.folder = plan.output + QLatin1Char('/') + folders[index];
    _results.push_back(result);
  }
  _is_done.resize(_results.size());
  _running.resize(_results.size());
}

void ScenarioTests::start(std::function<void()> all_done) {
  _all_done = std::move(all_done);
  startNext();
}

void ScenarioTests::startNext() {
  while (_next < _results.size() && _count_running < _plan.jobs) {
    const std::size_t index = _next++;
    TestResult &result = _results[index];
    const auto lines = read_scenario(_commands, result.file, false);
    if (!lines) {
      result.failure = with_line(result.file, lines.failure().text);
      _is_done[index] = true;
      continue;
    }
    result.expectations = count_expectations(*lines);
    _running[index] = std::make_unique<TestedScenario>(_plan, result, [this, index] { hasEnded(index); });
    ++_count_running;
    _running[index]->start();
  }
  printResults();
  if (_count_running == 0)
    _all_done();
}

void ScenarioTests::hasEnded(std::size_t index) {
  _results[index] = _running[index]->result();
  _running[index].reset();
  _is_done[index] = true;
  --_count_running;
  startNext();
}

void ScenarioTests::printResults() {
  for (; _printed < _results.size() && _is_done[_printed]; ++_printed)
    print_result(_results[_printed]);
}

QString ScenarioTests::summary() const {
  std::size_t expectations = 0;
  std::size_t failed = 0;
  for (const TestResult &result : _results) {
    expectations += static_cast<std::size_t>(result.expectations);
    failed += result.failure ? 1 : 0;
  }
  return QStringLiteral("%1, %2, %3 failed")
      .arg(counted(_results.size(), "scenario"), counted(expectations, "expectation"))
      .arg(failed);
}

bool ScenarioTests::hasFailures() const {
  return std::any_of(_results.begin(), _results.end(),
                     [](const TestResult &result) { return result.failure.has_value(); });
}

} // namespace buttondriver::buttonctl
