// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fleet/measure/setting.h"
#include "fleet/panels/delays.h"

namespace buttondriver::fleet {

/// What one run of an even load took.
struct SteadyRun {
  double rate = 0;                   ///< commands in a second, as they were published
  Delays delays;                     ///< from publishing to where the command goes
  double receiver_seconds = 0;       ///< processor time of the bridge, or of the subscriber, for a command
  double broker_seconds = 0;         ///< processor time of the broker for a command
  double bytes_per_panel = 0;        ///< of the bridge, with all panels against one
  double broker_bytes_per_panel = 0; ///< of the broker, for the same panels' topics
  int threads = 0;                   ///< of the bridge
};

// Both throw std::runtime_error when a command is lost or a program does not do its part.

/// Through the bridge to sockets of panels. All of them show what they should in the end.
SteadyRun run_with_bridge(const Setting &setting);
/// To a subscriber that does nothing.
SteadyRun run_with_bare_subscriber(const Setting &setting);

} // namespace buttondriver::fleet
