// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/server/http_endpoint.h"
#include "simulator/notices/notices.h"
#include "simulator/simulation/simulation_settings.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace buttondriver::simulator {

/// What `buttondriver-sim [options] [MAP [ADDRESS [PORT]]]` was asked for; with --device there is no MAP.
struct Options {
  SimulationSettings simulation;
  std::optional<HttpEndpoint> http; ///< where the web page goes; nothing: no page
  Notices notices = Notices::usual;
  QString log_file;               ///< where the log goes; empty: to standard output and standard error
  QString ports_file;             ///< empty: none
  bool until_input_ends = false;  ///< the end of standard input ends the program, as SIGTERM does
  bool http_is_asked_for = false; ///< the command line names it, so that the program must not run without
};

/// A text to print instead of running, and the exit status that goes with it.
struct Answer {
  QString text;
  int exit_status; ///< 0: asked for, goes to standard output; 2: a bad command line, goes to standard error
};

/// Reads a command line, the program's name first.
std::variant<Options, Answer> read_options(const QStringList &arguments);

} // namespace buttondriver::simulator
