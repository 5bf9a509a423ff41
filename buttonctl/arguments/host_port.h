// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>

#include <cstdint>

namespace buttondriver::buttonctl {

struct HostPort {
  QString host;
  std::uint16_t port = 0;
};

/// "HOST:PORT", or "[HOST]:PORT" for an IPv6 address, with a port from `lowest_port`. Where `default_host` is not
/// empty, it stands for a host that is left out, "PORT". `name` is what the message calls the text.
Outcome<HostPort> parse_host_port(const QString &name, const QString &text, const QString &default_host,
                                  int lowest_port);

} // namespace buttondriver::buttonctl
