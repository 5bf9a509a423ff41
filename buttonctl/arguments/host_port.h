// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace buttondriver::buttonctl {

struct HostPort {
  QString host;
  std::uint16_t port = 0;
};

/// A host that may come with a port.
struct PossiblePort {
  QString host;
  std::optional<std::uint16_t> port;
};

/// 1 to 65535; `name` is what the message calls the text.
Outcome<std::uint16_t> parse_port(const QString &name, const QString &text);

/// "HOST", "HOST:PORT", "[HOST]" or "[HOST]:PORT", with a port as above. An IPv6 address needs no brackets when there
/// is no port: two colons are no port.
Outcome<PossiblePort> parse_host(const QString &name, const QString &text);

/// "HOST:PORT", or "[HOST]:PORT" for an IPv6 address, with a port from `lowest_port`. Where `default_host` is not
/// empty, it stands for a host that is left out, "PORT". `name` is what the message calls the text.
Outcome<HostPort> parse_host_port(const QString &name, const QString &text, const QString &default_host,
                                  int lowest_port);

} // namespace buttondriver::buttonctl
