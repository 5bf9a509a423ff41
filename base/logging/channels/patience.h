// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>

namespace buttondriver {

class LogDescriptor;

/// How long writers wait for a slow reader. Waiting uses up the patience, and each ten seconds without waiting give one
/// second of it back, so that in the long run at most a tenth of the time is spent waiting.
class Patience {
public:
  static constexpr std::chrono::milliseconds usual{1000};

  explicit Patience(std::chrono::milliseconds most = usual) : _most(most), _left(most) {}

  /// Waits until `descriptor` has room. False when the patience has not lasted so long.
  bool waitFor(const LogDescriptor &descriptor);

private:
  using Clock = std::chrono::steady_clock;

  Clock::duration _most;
  Clock::duration _left; // after the last wait
  Clock::time_point _last_wait{};
};

} // namespace buttondriver
