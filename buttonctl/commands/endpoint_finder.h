// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/session/endpoint.h"
#include "outcome/outcome.h"

#include <QCommandLineParser>
#include <QString>

#include <cstdint>
#include <optional>

namespace buttondriver::buttonctl {

/// Where the daemon and the virtual panel are, by the options --host, --port, --timeout and --panel, and by the
/// variables BUTTONDRIVER_HOST, BUTTONDRIVER_PORT and BUTTONDRIVER_PANEL of the environment for what no option says. A
/// port counts more than one that is given with a host.
class EndpointFinder {
public:
  /// Takes over what `parser` has of these options; what was taken before and is not among them stays.
  Outcome<Done> take(const QCommandLineParser &parser);

  /// Reads the environment, though not the variables that options stand in for.
  Outcome<Endpoint> endpoint() const;
  /// "http://HOST:PORT". Reads the environment likewise.
  Outcome<QString> panel() const;

private:
  std::optional<QString> _host;
  std::optional<std::uint16_t> _port_of_host;
  std::optional<std::uint16_t> _port;
  std::optional<QString> _panel;
  int _timeout_ms = default_timeout_ms;
};

} // namespace buttondriver::buttonctl
