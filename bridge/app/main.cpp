// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/bridge.h"
#include "bridge/app/log.h"
#include "bridge/app/options.h"
#include "bridge/configuration/configuration_file.h"
#include "event_loop/epoll_dispatcher.h"
#include "file_watch/configuration_watcher.h"
#include "process/process.h"
#include "unixsignalhandler/unix_signal_handler.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

namespace {

using namespace buttondriver::bridge;
using unixsignalhandler::UnixSignalHandler;

constexpr int status_fault = 1;

// Signal callbacks take no arguments.
Bridge *running_bridge = nullptr;
QString configuration_file;

void reload() {
  const auto configuration = read_configuration_file(configuration_file);
  if (!configuration) {
    log_fault("the configuration stays as it was:");
    for (const QByteArray &line : configuration.failure().text.toUtf8().split('\n'))
      log_fault(line);
    return;
  }
  log_event("the configuration is read again");
  if (const auto changed = running_bridge->change(*configuration); !changed)
    log_fault(changed.failure().text.toUtf8());
}

int say(const Answer &answer) {
  if (answer.exit_status == 0)
    std::fputs(answer.text.toLocal8Bit().constData(), stdout);
  else
    std::fprintf(stderr, "buttondriver-mqtt: %s; see --help\n", answer.text.toLocal8Bit().constData());
  return answer.exit_status;
}

int run(const Configuration &configuration) {
  UnixSignalHandler signal_bridge;
  Bridge bridge;
  running_bridge = &bridge;
  const auto end = [] {
    running_bridge->end();
    QCoreApplication::quit();
  };
  UnixSignalHandler::installSignalHandler(SIGTERM, end);
  UnixSignalHandler::installSignalHandler(SIGINT, end);
  UnixSignalHandler::installSignalHandler(SIGHUP, reload);
  const buttondriver::ConfigurationWatcher watcher(configuration_file);
  QObject::connect(&watcher, &buttondriver::ConfigurationWatcher::fileChanged, &bridge, reload);
  if (const auto started = bridge.start(configuration); !started) {
    log_fault(started.failure().text.toUtf8());
    return status_fault;
  }
  return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
  buttondriver::prepare_process();
  QCoreApplication::setEventDispatcher(new buttondriver::EpollDispatcher); // the application's
  QCoreApplication application(argc, argv);
  const auto command_line = read_options(QCoreApplication::arguments());
  if (const auto *answer = std::get_if<Answer>(&command_line))
    return say(*answer);

  const Options &options = *std::get_if<Options>(&command_line); // it is one of the two
  choose_log_level(options.log_level);
  configuration_file = options.configuration_file;
  const auto configuration = read_configuration_file(configuration_file);
  if (!configuration) {
    std::fprintf(stderr, "%s\n", configuration.failure().text.toLocal8Bit().constData());
    return status_fault;
  }
  if (options.only_checks) {
    std::printf("%s: %s, %s\n", configuration_file.toLocal8Bit().constData(),
                counted(static_cast<int>(configuration->panels.size()), "panel").constData(),
                counted(static_cast<int>(configuration->groups.size()), "group").constData());
    return 0;
  }
  return run(*configuration);
}
