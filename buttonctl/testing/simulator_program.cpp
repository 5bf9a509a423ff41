// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/testing/simulator_program.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

namespace buttondriver::buttonctl {

Outcome<QString> simulator_program(const QString &asked_for) {
  static const QString name = QStringLiteral("buttondriver-sim");
  if (asked_for.contains(QLatin1Char('/'))) {
    if (!QFileInfo(asked_for).isExecutable() || QFileInfo(asked_for).isDir())
      return Failure{QStringLiteral("--simulator: '%1' is no program").arg(asked_for)};
    return QFileInfo(asked_for).absoluteFilePath();
  }
  const QString beside = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
  if (asked_for.isEmpty() && QFileInfo(beside).isExecutable())
    return beside;
  const QString found = QStandardPaths::findExecutable(asked_for.isEmpty() ? name : asked_for);
  if (!found.isEmpty())
    return found;
  if (!asked_for.isEmpty())
    return Failure{QStringLiteral("--simulator: there is no '%1' in PATH").arg(asked_for)};
  return Failure{
      QStringLiteral("there is no %1 beside this program or in PATH; name one with --simulator PROGRAM").arg(name)};
}

} // namespace buttondriver::buttonctl
