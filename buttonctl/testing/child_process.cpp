// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/testing/child_process.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace buttondriver::buttonctl {

namespace {

constexpr int grace_ms = 2000;

/// Between fork and exec.
void become_a_group() {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
}

} // namespace

ChildProcess::ChildProcess() {
  setStandardInputFile(QProcess::nullDevice());
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
  setChildProcessModifier(become_a_group);
#endif
}

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
void ChildProcess::setupChildProcess() { become_a_group(); }
#endif

ChildProcess::~ChildProcess() {
  disconnect();
  stop();
}

bool ChildProcess::run(const QString &program, const QStringList &arguments) {
  start(program, arguments);
  if (!waitForStarted())
    return false;
  _group = processId();
  return true;
}

void ChildProcess::stop() {
  if (_group == 0)
    return;
  const auto group = static_cast<pid_t>(_group);
  _group = 0;
  if (state() != NotRunning) {
    ::kill(-group, SIGTERM);
    waitForFinished(grace_ms);
  }
  // What it has started may live on without it.
  ::kill(-group, SIGKILL);
  if (state() != NotRunning)
    waitForFinished();
}

} // namespace buttondriver::buttonctl
