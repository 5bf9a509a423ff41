// SPDX-License-Identifier: Apache-2.0
#include "app/daemon.h"
#include "app/process.h"
#include "event_loop/epoll_dispatcher.h"
#include "logging/log_gathering.h"

#include <QCoreApplication>

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
