// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/support/tool_run.h"

#include <QEventLoop>
#include <QTimer>

namespace buttondriver::test {

namespace {

constexpr int longest_run_ms = 60000;

} // namespace

ToolRun::ToolRun(const QStringList &arguments) { _process.start(QStringLiteral(BUTTONCTL), arguments); }

ToolRun::~ToolRun() {
  if (_process.state() == QProcess::NotRunning)
    return;
  _process.kill();
  _process.waitForFinished();
}

ToolResult ToolRun::finish() {
  _process.closeWriteChannel();
  QEventLoop loop;
  QObject::connect(&_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop, &QEventLoop::quit);
  QObject::connect(&_process, &QProcess::errorOccurred, &loop, &QEventLoop::quit);
  QTimer::singleShot(longest_run_ms, &loop, &QEventLoop::quit);
  if (_process.state() != QProcess::NotRunning)
    loop.exec();
  const bool ended = _process.state() == QProcess::NotRunning && _process.exitStatus() == QProcess::NormalExit;
  return {ended ? _process.exitCode() : -1, _process.readAllStandardOutput().toStdString(),
          _process.readAllStandardError().toStdString()};
}

ToolResult run_tool(const QStringList &arguments, const QByteArray &input) {
  ToolRun run(arguments);
  run.write(input);
  return run.finish();
}

} // namespace buttondriver::test
