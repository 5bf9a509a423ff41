// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/http/http_endpoint.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace buttondriver::simulator {

/// What `buttondriver-sim [options] [MAP [ADDRESS [PORT]]]` was asked for.
struct Options {
  QString root;                     ///< folder that the fixed paths lie under; empty for the ready-made one
  QString snapshot_file;            ///< empty: no picture
  QString record_file;              ///< empty: no recording
  std::optional<HttpEndpoint> http; ///< where the web page goes; nothing: no page
  bool http_is_asked_for = false;   ///< the command line names it, so that the program must not run without
  QStringList daemon_arguments;     ///< as the daemon itself would get them: program, map file, address, port
};

/// A text to print instead of running, and the exit status that goes with it.
struct Answer {
  QString text;
  int exit_status; ///< 0: asked for, goes to standard output; 2: a bad command line, goes to standard error
};

/// Reads a command line, the program's name first.
std::variant<Options, Answer> read_options(const QStringList &arguments);

} // namespace buttondriver::simulator
