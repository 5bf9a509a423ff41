// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/framing.h"

#include <QString>

#include <cstdint>

namespace buttondriver::buttonctl {

inline constexpr int default_timeout_ms = 3000;

/// Where the daemon is, and how long anything over the connection may take.
struct Endpoint {
  QString host = QStringLiteral("127.0.0.1");
  std::uint16_t port = DEFAULT_PORT;
  int timeout_ms = default_timeout_ms;
};

} // namespace buttondriver::buttonctl
