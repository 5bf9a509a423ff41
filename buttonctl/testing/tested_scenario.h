// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/testing/child_process.h"
#include "buttonctl/testing/results/test_result.h"
#include "buttonctl/testing/test_plan.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QObject>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

namespace buttondriver::buttonctl {

/// A scenario that is run against a virtual panel of its own, both as processes of their own.
class TestedScenario {
public:
  /// `result` has the file, the number of its expectations, and the folder. `plan` must outlive this; its simulator is
  /// a path. `is_done` is called once, from the event loop, when nothing of it runs any more.
  TestedScenario(const TestPlan &plan, TestResult result, std::function<void()> is_done);
  TestedScenario(const TestedScenario &) = delete;
  TestedScenario &operator=(const TestedScenario &) = delete;

  void start();
  /// Complete when it is done.
  const TestResult &result() const { return _result; }

private:
  bool prepareFolder();
  void startSimulator();
  void lookForPorts();
  void startScenario(const QString &port, const QString &page);
  void simulatorHasEnded();
  void scenarioHasEnded();
  void finish(const QString &failure);

  const TestPlan &_plan;
  TestResult _result;
  const std::function<void()> _is_done;
  bool _is_finished = false;
  QElapsedTimer _clock;
  QTemporaryDir _ports_folder;
  QFileSystemWatcher _ports_watcher;
  QTimer _limit;
  ChildProcess _simulator;
  ChildProcess _client;
  ChildProcess _scenario;
};

} // namespace buttondriver::buttonctl
