// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/replay/player.h"

namespace buttondriver::buttonctl {

/// The system's monotonic clock. While it waits, the event loop of the thread runs.
class MonotonicClock : public ReplayClock {
public:
  std::int64_t nowUs() override;
  void waitUntil(std::int64_t deadline_us, const std::function<bool()> &give_up) override;
};

} // namespace buttondriver::buttonctl
