// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/button_setter_impl.h"
#include "files/system_paths.h"
#include "fpga/fpga.h"
#include "server/connector.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace buttondriver {

/// Gets the dispatcher and returns the setter that the server delivers to instead.
using WrapSetter = std::function<ButtonSetter *(ButtonSetter *)>;

/// The long-lived objects, made and torn down in a fixed order. Lives on the main thread, beside a QCoreApplication.
class Daemon {
public:
  /// Opens the hardware, before anybody has looked at the arguments.
  explicit Daemon(const SystemPaths &paths = {});
  ~Daemon();
  Daemon(const Daemon &) = delete;
  Daemon &operator=(const Daemon &) = delete;

  /// Makes the buttons, the dispatcher and the server. `arguments` are the program, a map file that must be there and
  /// is not read, the listen address, and the port; a port that is no number is 0. Returns false, and says why, without
  /// a map file. A server that cannot listen is said and not a failure: the daemon runs on.
  ///
  /// What `wrap` returns, where there is one, stays the caller's and outlives this object.
  bool start(const QStringList &arguments, const WrapSetter &wrap = {});

  FPGA &fpga() { return _fpga; }
  const FPGA &fpga() const { return _fpga; }
  /// Only after a successful start.
  ButtonSetterImpl &dispatcher() { return _dispatcher.value(); }
  Connector &server() { return _server.value(); }
  const Connector &server() const { return _server.value(); }

private:
  SystemPaths _paths;
  FPGA _fpga;
  ButtonMap _buttons;
  std::optional<ButtonSetterImpl> _dispatcher;
  std::optional<Connector> _server;
};

} // namespace buttondriver
