// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/button_setter_impl.h"
#include "files/system_paths.h"
#include "fpga/fpga.h"
#include "logging/log_gathering.h"
#include "server/connector.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace buttondriver {

/// Gets the dispatcher, and returns the setter to which the server delivers in its place.
using WrapSetter = std::function<ButtonSetter *(ButtonSetter *)>;

/// The long-lived objects, made and torn down in a fixed order. Lives on the main thread, beside a QCoreApplication.
class Daemon {
public:
  /// Opens the hardware and queues a blackout of all screens. The arguments play no part in that.
  explicit Daemon(const SystemPaths &paths = {});
  Daemon(const Daemon &) = delete;
  Daemon &operator=(const Daemon &) = delete;

  /// Makes the buttons, the dispatcher and the server. `arguments` are the program, a map file that must be there and
  /// is not read, the listen address, and the port; a port that is no number is 0. Without a map file it returns false,
  /// and logs why. When the server cannot listen, that is printed, and the result is true: the daemon runs on without.
  ///
  /// What `wrap` returns, where there is one, stays the caller's and outlives this object.
  bool start(const QStringList &arguments, const WrapSetter &wrap = {});

  /// Has all clients, and null messages that are not written yet, wait while the log is full. Only after a successful
  /// start; either object may end first.
  void follow(const LogGathering &log);

  FPGA &fpga() { return _fpga; }
  const FPGA &fpga() const { return _fpga; }
  /// Only after a successful start.
  ButtonSetterImpl &dispatcher() { return _dispatcher.value(); }
  Connector &server() { return _server.value(); }
  const Connector &server() const { return _server.value(); }

private:
  SystemPaths _paths;
  FPGA _fpga;
  std::optional<ButtonSetterImpl> _dispatcher;
  std::optional<Connector> _server;
  std::vector<std::unique_ptr<IButton>> _buttons; // the first to go; those above use them no more by then
};

} // namespace buttondriver
