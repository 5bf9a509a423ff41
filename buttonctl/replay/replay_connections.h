// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/replay/player.h"
#include "buttonctl/replay/replay_connection.h"
#include "buttonctl/session/endpoint.h"

#include <cstdint>
#include <map>
#include <memory>

namespace buttondriver::buttonctl {

/// Sends frames over as many connections as the recording has, each opened with its first frame and closed after its
/// last one.
class ReplayConnections : public FrameSink {
public:
  explicit ReplayConnections(const Endpoint &endpoint) : _endpoint(endpoint) {}

  Outcome<Done> send(const RecordedFrame &frame, bool is_last) override;
  bool hasFailed() const override;
  /// Waits until everything was sent and all connections are closed.
  Outcome<Done> finish();

private:
  /// The failure of the first connection that has one.
  Outcome<Done> outcome() const;

  const Endpoint _endpoint;
  std::map<std::int32_t, std::unique_ptr<ReplayConnection>> _connections;
};

} // namespace buttondriver::buttonctl
