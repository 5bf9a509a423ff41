// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/host_port.h"
#include "buttonctl/commands/step.h"

#include <QString>

#include <cstdint>

namespace buttondriver::buttonctl {

/// Where the daemon is, and how long anything over the connection may take.
struct Endpoint {
  QString host = QStringLiteral("127.0.0.1");
  std::uint16_t port = 3003;
  int timeout_ms = 3000;
};

/// What a command line asks for. Beside the kind and what every command has, each command has fields of its own.
struct Request {
  enum class Kind {
    print_help,
    print_version,
    steps,
    batch,
    record,
    replay,
    scenario,
    doctor,
  };

  Kind kind = Kind::steps;
  Endpoint endpoint;
  bool dry_run = false;
  QString help;     ///< of print_help
  Steps steps;      ///< of steps
  QString file;     ///< of batch (empty: standard input), record, replay, scenario
  HostPort listen;  ///< of record; port 0 takes a free one
  double speed = 1; ///< of replay, above 0
  QString panel_url = QStringLiteral("http://127.0.0.1:8080"); ///< of scenario
  bool update = false;                                         ///< of scenario: accept what the screens show
  QString root;                                                ///< of doctor: folder that the fixed paths lie under
  bool is_virtual = false;                                     ///< of doctor: there is no device to look for
};

} // namespace buttondriver::buttonctl
