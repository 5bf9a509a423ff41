// SPDX-License-Identifier: Apache-2.0
#include "logging/log_channel.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <mutex>
#include <poll.h>
#include <string>
#include <unistd.h>

namespace buttondriver {

namespace {

/// A pipe that is writable at all takes this many bytes without waiting.
constexpr std::size_t bytes_at_once = PIPE_BUF;

/// Time without waiting, for each part of it that comes back as patience.
constexpr int recovery_factor = 10;

} // namespace

void LogChannel::write(std::string_view text) {
  // One for all channels: two may write to one pipe, whose last room would be promised to both.
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  if (_lost > 0) {
    // The first line feed ends the text that was cut off.
    const std::string gap = "\nbuttondriver: texts lost that nobody read: " + std::to_string(_lost) + "\n";
    if (!isWritableWithin(std::chrono::milliseconds(0)) || !writeAll(gap)) {
      ++_lost;
      return;
    }
    _lost = 0;
  }
  if (!writeAll(text))
    _lost = 1;
}

/// False when the reader did not read.
bool LogChannel::writeAll(std::string_view text) {
  while (!text.empty()) {
    if (!becomesWritable())
      return false;
    const ssize_t written = ::write(_descriptor, text.data(), std::min(text.size(), bytes_at_once));
    if (written > 0)
      text.remove_prefix(static_cast<std::size_t>(written));
    else if (written == 0 || (errno != EINTR && errno != EAGAIN))
      return true; // nobody will ever read it
  }
  return true;
}

/// Waits, if need be, as long as there is patience.
bool LogChannel::becomesWritable() {
  if (isWritableWithin(std::chrono::milliseconds(0)))
    return true;
  const Clock::time_point start = Clock::now();
  _patience = std::min(_most_patience, _patience + (start - _last_wait) / recovery_factor);
  const bool is_writable = isWritableWithin(std::chrono::duration_cast<std::chrono::milliseconds>(_patience));
  _last_wait = Clock::now();
  _patience = std::max(Clock::duration::zero(), _patience - (_last_wait - start));
  return is_writable;
}

/// Also true for a descriptor that can only fail.
bool LogChannel::isWritableWithin(std::chrono::milliseconds time) const {
  pollfd descriptor{_descriptor, POLLOUT, 0};
  int count = 0;
  while ((count = ::poll(&descriptor, 1, static_cast<int>(time.count()))) < 0 && errno == EINTR) {
  }
  return count != 0;
}

} // namespace buttondriver
