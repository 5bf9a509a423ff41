// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "buttonctl/testing/tested_scenario.h"

#include <QEventLoop>
#include <QStringList>

#include <memory>
#include <vector>

namespace buttondriver::buttonctl {

/// Tests scenarios, several at a time, and prints a line for each in the order of the files.
class ScenarioTests {
public:
  /// `plan` and `commands` must outlive this.
  ScenarioTests(const TestPlan &plan, const CommandTable &commands, const QStringList &files);

  /// Starts the first ones; the others follow from the event loop. `all_done` is called there when all are done.
  void start(std::function<void()> all_done);
  /// In the order of the files; complete when all are done.
  const std::vector<TestResult> &results() const { return _results; }
  /// "3 scenarios, 12 expectations, 1 failed"
  QString summary() const;
  bool hasFailures() const;

private:
  void startNext();
  void hasEnded(std::size_t index);
  void printResults();

  const TestPlan &_plan;
  const CommandTable &_commands;
  std::function<void()> _all_done;
  std::vector<TestResult> _results;
  std::vector<bool> _is_done;
  std::vector<std::unique_ptr<TestedScenario>> _running; ///< by the place of the file, null before and after
  std::size_t _next = 0;
  std::size_t _printed = 0;
  int _count_running = 0;
};

} // namespace buttondriver::buttonctl
