// SPDX-License-Identifier: Apache-2.0
#include "app/process.h"
#include "logging/log_gathering.h"
#include "logging/standard_output.h"
#include "simulator/app/page_opening.h"
#include "simulator/http/web_page.h"
#include "simulator/simulation/simulation.h"
#include "unixsignalhandler/unix_signal_handler.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

namespace {

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

} // namespace

int main(int argc, char **argv) {
  buttondriver::prepare_process();
  QCoreApplication application(argc, argv);
  const auto command_line = buttondriver::simulator::read_options(QCoreApplication::arguments());
  if (const auto *answer = std::get_if<Answer>(&command_line))
    return say(*answer);

  const buttondriver::LogGathering log;
  UnixSignalHandler signal_bridge;
  const Options &options = *std::get_if<Options>(&command_line); // it is one of the two
  Simulation simulation(options.simulation);
  running_simulation = &simulation;
  install_signal_callbacks();
  if (const auto started = simulation.start(); !started) {
    buttondriver::print_error("buttondriver-sim: %s\n", started.failure().text.toLocal8Bit().constData());
    return 1;
  }
  if (buttondriver::Daemon *daemon = simulation.daemon())
    daemon->follow(log);
  WebPage page(simulation);
  if (!buttondriver::simulator::open_page(page, options))
    return 1;
  return QCoreApplication::exec();
}
