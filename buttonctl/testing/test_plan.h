// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

namespace buttondriver::buttonctl {

/// What `buttonctl test` is asked for.
struct TestPlan {
  QStringList places; ///< files, and folders that hold scenarios
  QString simulator;  ///< a program, or its name in PATH; empty: to be looked for
  QString client;     ///< a line for the shell, empty for none
  QString output;     ///< the folder for what failures leave
  QString junit;      ///< a file, empty for none
  int jobs = 1;
  int limit_ms = 0;   ///< for a scenario as a whole
  int timeout_ms = 0; ///< for an expectation, as with `buttonctl run`
};

} // namespace buttondriver::buttonctl
