// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

namespace buttondriver {

/// A file descriptor that texts of the log are written to. It never holds its writers up for long: they wait for a slow
/// reader as long as the channel's patience lasts. Waiting uses up the patience, and each ten seconds without waiting
/// give one second of it back, so that in the long run at most a tenth of the time is spent waiting. While there is
/// none left, texts that the reader has no room for are lost, and a line of its own gives their number. A descriptor
/// that fails is ignored.
class LogChannel {
public:
  static constexpr std::chrono::milliseconds usual_patience{1000};

  /// The descriptor stays the caller's.
  explicit LogChannel(int descriptor, std::chrono::milliseconds patience = usual_patience)
      : _descriptor(descriptor), _most_patience(patience), _patience(patience) {}

  /// Writes `text` as it is. Safe to call from any thread; one call's text stays together.
  void write(std::string_view text);

private:
  using Clock = std::chrono::steady_clock;

  bool writeAll(std::string_view text);
  bool becomesWritable();
  bool isWritableWithin(std::chrono::milliseconds time) const;

  const int _descriptor;
  const Clock::duration _most_patience;
  Clock::duration _patience; // what was left after the last wait
  Clock::time_point _last_wait{};
  std::uint64_t _lost = 0; // texts since the patience was used up
};

} // namespace buttondriver
