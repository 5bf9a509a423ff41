// SPDX-License-Identifier: Apache-2.0
#include "logging/channels/patience.h"

#include "logging/channels/log_descriptor.h"

#include <algorithm>

namespace buttondriver {

namespace {

/// Time without waiting, for each part of it that comes back as patience.
constexpr int recovery_factor = 10;

} // namespace

bool Patience::waitFor(const LogDescriptor &descriptor) {
  const Clock::time_point start = Clock::now();
  _left = std::min(_most, _left + (start - _last_wait) / recovery_factor);
  const bool is_writable = descriptor.isWritableWithin(std::chrono::duration_cast<std::chrono::milliseconds>(_left));
  _last_wait = Clock::now();
  _left = std::max(Clock::duration::zero(), _left - (_last_wait - start));
  return is_writable;
}

} // namespace buttondriver
