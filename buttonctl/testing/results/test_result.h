// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace buttondriver::buttonctl {

/// How the test of one scenario ended.
struct TestResult {
  QString file;
  int expectations = 0;           ///< that the scenario has
  std::optional<QString> failure; ///< why it failed, for the user: "line 14: ..."
  QString folder;                 ///< holds what a failure has left
  QStringList kept;               ///< the names in it
  qint64 milliseconds = 0;
};

} // namespace buttondriver::buttonctl
