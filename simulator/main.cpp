#include "logging/message_handler.h"
#include "logging/standard_output.h"
#include "simulator/simulation.h"
#include "simulator/web_page.h"
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

/// False when the page was asked for and cannot be had.
bool open_page(WebPage &page, const Options &options) {
  QString reason;
  if (page.listen(*options.http, &reason)) {
    buttondriver::print("buttondriver-sim: page on %s\n", page.address().toLatin1().constData());
    return true;
  }
  std::fprintf(stderr, "buttondriver-sim: no web page on %s: %s\n",
               buttondriver::simulator::page_address(options.http->address, options.http->port).toLatin1().constData(),
               reason.toLocal8Bit().constData());
  return !options.http_is_asked_for;
}

} // namespace

int main(int argc, char **argv) {
  buttondriver::install_message_handler();
  QCoreApplication application(argc, argv);
  const auto command_line = buttondriver::simulator::read_options(QCoreApplication::arguments());
  if (const auto *answer = std::get_if<Answer>(&command_line))
    return say(*answer);

  UnixSignalHandler signal_bridge;
  const auto &options = std::get<Options>(command_line);
  Simulation simulation(options);
  running_simulation = &simulation;
  install_signal_callbacks();
  if (!simulation.start())
    return 1;
  WebPage page(simulation);
  if (options.http && !open_page(page, options))
    return 1;
  return QCoreApplication::exec();
}
