// SPDX-License-Identifier: Apache-2.0
#include "app/daemon.h"
#include "event_loop/epoll_dispatcher.h"
#include "logging/log_gathering.h"
#include "process/process.h"

#include <QCoreApplication>

#if defined(__has_attribute) && __has_attribute(retain)
#define BUTTONDRIVER_KEPT __attribute__((used, retain))
#else
#define BUTTONDRIVER_KEPT __attribute__((used))
#endif

namespace {

/// The command line has no option that prints it, and the log's lines are fixed: `strings` finds it in the program, and
/// so does `buttonctl doctor`.
BUTTONDRIVER_KEPT const char version_to_be_found[] = "buttondriver " BUTTONDRIVER_VERSION;

} // namespace

int main(int argc, char **argv) {
  buttondriver::prepare_process();
  QCoreApplication::setEventDispatcher(new buttondriver::EpollDispatcher); // the application's
  QCoreApplication application(argc, argv);
  const buttondriver::LogGathering log;
  buttondriver::Daemon daemon;
  if (!daemon.start(QCoreApplication::arguments()))
    return 1;
  daemon.follow(log);
  return QCoreApplication::exec();
}
