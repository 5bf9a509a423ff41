// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/app/log.h"

#include <QString>
#include <QStringList>

#include <variant>

namespace buttondriver::bridge {

/// What `buttondriver-mqtt [options]` was asked for.
struct Options {
  QString configuration_file;
  bool only_checks = false; ///< reads the configuration, tells what is wrong with it, and ends
  LogLevel log_level = LogLevel::events;
};

/// A text to print instead of running, and the exit status that goes with it.
struct Answer {
  QString text;
  int exit_status; ///< 0: asked for, goes to standard output; 2: a bad command line, goes to standard error
};

/// Reads a command line, the program's name first.
std::variant<Options, Answer> read_options(const QStringList &arguments);

} // namespace buttondriver::bridge
