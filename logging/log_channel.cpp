#include "logging/log_channel.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <poll.h>
#include <string>
#include <unistd.h>

namespace buttondriver {

namespace {

/// What a pipe that has room at all takes without waiting.
constexpr std::size_t sure_to_fit = PIPE_BUF;

} // namespace

void LogChannel::write(std::string_view text) {
  const std::lock_guard lock(_mutex);
  if (_lost > 0) {
    // The first line feed ends the text that was cut off.
    const std::string gap = "\nbuttondriver: texts lost that nobody read: " + std::to_string(_lost) + "\n";
    if (!writeAll(gap, 0)) {
      ++_lost;
      return;
    }
    _lost = 0;
  }
  if (!writeAll(text, _patience_ms))
    _lost = 1;
}

/// False when the reader did not read.
bool LogChannel::writeAll(std::string_view text, int patience_ms) {
  while (!text.empty()) {
    if (!becomesWritable(patience_ms))
      return false;
    const ssize_t written = ::write(_descriptor, text.data(), std::min(text.size(), sure_to_fit));
    if (written > 0)
      text.remove_prefix(static_cast<std::size_t>(written));
    else if (written == 0 || (errno != EINTR && errno != EAGAIN))
      return true; // nobody will ever read it
  }
  return true;
}

/// Also true for a descriptor that can only fail.
bool LogChannel::becomesWritable(int patience_ms) const {
  pollfd descriptor{_descriptor, POLLOUT, 0};
  int count = 0;
  while ((count = ::poll(&descriptor, 1, patience_ms)) < 0 && errno == EINTR) {
  }
  return count != 0;
}

} // namespace buttondriver
