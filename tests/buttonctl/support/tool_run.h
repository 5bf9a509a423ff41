// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <string>

namespace buttondriver::test {

struct ToolResult {
  int exit_status;
  std::string output; ///< standard output
  std::string errors; ///< standard error
};

/// The built program in a process of its own, while the event loop of the test goes on.
class ToolRun {
public:
  explicit ToolRun(const QStringList &arguments);
  ~ToolRun();
  ToolRun(const ToolRun &) = delete;
  ToolRun &operator=(const ToolRun &) = delete;

  void write(const QByteArray &input) { _process.write(input); }

  /// Bytes of what was written that the program's end of the pipe has not taken yet.
  qint64 unwritten() const { return _process.bytesToWrite(); }

  /// Closes standard input and waits for the end; exit status -1 for a crash, or when there is no end in a minute.
  ToolResult finish();

private:
  QProcess _process;
};

/// Runs the program with `input` on its standard input.
ToolResult run_tool(const QStringList &arguments, const QByteArray &input = QByteArray());

} // namespace buttondriver::test
