// SPDX-License-Identifier: Apache-2.0
#include "logging/log_gathering.h"
#include "process/process.h"
#include "simulator/app/input_end.h"
#include "simulator/app/page_opening.h"
#include "simulator/app/ports_file.h"
#include "simulator/http/web_page.h"
#include "simulator/notices/notices.h"
#include "simulator/simulation/simulation.h"
#include "unixsignalhandler/unix_signal_handler.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <optional>

#include <unistd.h>

namespace {

using buttondriver::Failure;
using buttondriver::simulator::Answer;
using buttondriver::simulator::Options;
using buttondriver::simulator::Simulation;
using buttondriver::simulator::WebPage;
using unixsignalhandler::UnixSignalHandler;

// Signal callbacks take no arguments.
Simulation *running_simulation = nullptr;

void install_signal_callbacks() {
  const auto end = [] { running_simulation->end(); };
  UnixSignalHandler::installSignalHandler(SIGTERM, end);
  UnixSignalHandler::installSignalHandler(SIGINT, end);
  UnixSignalHandler::installSignalHandler(SIGUSR1, [] { running_simulation->takeSnapshot(); });
}

int say(const Answer &answer) {
  if (answer.exit_status == 0)
    std::fputs(answer.text.toLocal8Bit().constData(), stdout);
  else
    std::fprintf(stderr, "buttondriver-sim: %s; see --help\n", answer.text.toLocal8Bit().constData());
  return answer.exit_status;
}

void tell(const Failure &failure) {
  buttondriver::simulator::tell_fault("buttondriver-sim: %s\n", failure.text.toLocal8Bit().constData());
}

/// Before anything is logged.
bool prepare_log(const Options &options) {
  buttondriver::simulator::choose_notices(options.notices);
  if (options.log_file.isEmpty() ||
      buttondriver::simulator::move_log(QFile::encodeName(options.log_file).constData()) == 0)
    return true;
  tell(Failure{QStringLiteral("cannot write the log %1: %2")
                   .arg(options.log_file, QString::fromLocal8Bit(std::strerror(errno)))});
  return false;
}

bool write_ports(const Options &options, Simulation &simulation, const WebPage &page) {
  if (options.ports_file.isEmpty())
    return true;
  buttondriver::Daemon *const daemon = simulation.daemon();
  const auto written = buttondriver::simulator::write_ports(
      options.ports_file, daemon ? std::optional(daemon->server().port()) : std::nullopt, page.port());
  if (!written)
    tell(written.failure());
  return static_cast<bool>(written);
}

} // namespace

int main(int argc, char **argv) {
  buttondriver::prepare_process();
  QCoreApplication application(argc, argv);
  const auto command_line = buttondriver::simulator::read_options(QCoreApplication::arguments());
  if (const auto *answer = std::get_if<Answer>(&command_line))
    return say(*answer);

  const Options &options = *std::get_if<Options>(&command_line); // it is one of the two
  buttondriver::simulator::remove_ports(options.ports_file);
  if (!prepare_log(options))
    return 1;
  const buttondriver::LogGathering log;
  UnixSignalHandler signal_bridge;
  Simulation simulation(options.simulation);
  running_simulation = &simulation;
  install_signal_callbacks();
  if (const auto started = simulation.start(); !started) {
    tell(started.failure());
    return 1;
  }
  if (buttondriver::Daemon *daemon = simulation.daemon())
    daemon->follow(log);
  WebPage page(simulation);
  if (!buttondriver::simulator::open_page(page, options) || !write_ports(options, simulation, page))
    return 1;
  std::optional<buttondriver::simulator::InputEnd> input_end;
  if (options.until_input_ends)
    input_end.emplace(STDIN_FILENO, [&simulation] { simulation.endAfterWork(); });
  return QCoreApplication::exec();
}
