// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QProcess>
#include <QStringList>

namespace buttondriver::buttonctl {

/// A program that is ended, with all that it has started, when this goes, and at the latest when the program that made
/// it ends, however that ends. It has no standard input, and gets no signals from the terminal.
class ChildProcess : public QProcess {
public:
  ChildProcess();
  ~ChildProcess() override;
  ChildProcess(const ChildProcess &) = delete;
  ChildProcess &operator=(const ChildProcess &) = delete;

  /// False when it cannot be started: see errorString(). Blocks until it runs.
  bool run(const QString &program, const QStringList &arguments);
  /// Asks it to end with SIGTERM, waits up to two seconds for that, and then ends it. Blocks meanwhile.
  void stop();

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
protected:
  void setupChildProcess() override;
#endif

private:
  qint64 _group = 0; ///< its process group, 0 when it was not started
};

} // namespace buttondriver::buttonctl
