// SPDX-License-Identifier: Apache-2.0
// Reads its configuration again on SIGHUP and ends in order on SIGTERM, both in the event loop.
#include <buttondriver/unixsignalhandler/unix_signal_handler.h>

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

using unixsignalhandler::UnixSignalHandler;

static void tell(const char *text) {
  std::puts(text);
  std::fflush(stdout);
}

static void read_configuration() { tell("SIGHUP: reading the configuration"); }

static void end() {
  tell("SIGTERM: ending");
  QCoreApplication::quit();
}

int main(int argc, char **argv) {
  const QCoreApplication application(argc, argv);
  const UnixSignalHandler bridge;
  if (!UnixSignalHandler::installSignalHandler(SIGHUP, read_configuration) ||
      !UnixSignalHandler::installSignalHandler(SIGTERM, end))
    return 1;
  tell("ready");
  return QCoreApplication::exec();
}
