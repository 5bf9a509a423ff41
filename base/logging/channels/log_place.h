// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "logging/channels/log_descriptor.h"
#include "logging/channels/patience.h"
#include "logging/channels/text_queue.h"

#include <chrono>
#include <cstdint>
#include <string_view>

namespace buttondriver {

/// Tells the time; a test may have one of its own.
using LogClock = std::chrono::steady_clock::time_point (*)();

/// Where texts of the log go to when they are gathered: they wait here until they are written many at a time, and for
/// as long as a slow reader has no room for them. For one thread at a time.
///
///     what waits        what happens
///     ----------------  ----------------------------------------------------------------------------------------------
///     16 KiB more       they are written, as far as the reader has room
///     1 MiB             it is full, until the low mark: who brings texts should stop
///     256 KiB           it is low: no longer full, and no longer dropping. The number of texts that were dropped
///                       follows what waits, as a line of its own
///     20 MiB            writers wait for the reader as long as their patience lasts; then it drops what comes
///
/// When it is full and the reader has read nothing for thirty seconds, nobody waits for that reader any longer: it
/// drops what comes, and is not full. A descriptor that fails is ignored, together with what waits for it.
class LogPlace {
public:
  static constexpr std::size_t at_once = 16 * 1024;
  static constexpr std::size_t low_mark = 256 * 1024;
  static constexpr std::size_t full_mark = 1024 * 1024;
  /// The longest text that a client can send, with some room for what else is under way.
  static constexpr std::size_t most_waiting = 20 * 1024 * 1024;
  static constexpr std::chrono::seconds stuck_after{30};

  LogPlace(const LogDescriptor &descriptor, LogClock clock, std::chrono::milliseconds patience = Patience::usual)
      : _descriptor(descriptor), _clock(clock), _patience(patience) {}

  const LogDescriptor &descriptor() const { return _descriptor; }
  bool isFull() const { return _is_full; }
  /// Whether texts wait for a reader who has no room.
  bool isWaiting() const { return _is_waiting; }

  /// Takes `text` in. True when much was gathered, so that it was written, or should have been: what the two functions
  /// above return may be another now.
  bool append(std::string_view text) {
    _offered += text.size();
    if (_is_dropping)
      ++_lost;
    else
      _queue.append(text);
    if (_offered < at_once)
      return false;
    writeMuch();
    return true;
  }

  /// Writes what the reader has room for, and looks whether it has kept everybody waiting for too long.
  void write();
  /// Writes all that waits, and waits for the reader as long as the usual patience lasts. What is left then is gone.
  void finish();

private:
  void writeMuch();
  void writeSome();
  void changeState();
  void endDropping();
  bool isStuck() const;

  const LogDescriptor _descriptor;
  const LogClock _clock;
  Patience _patience;
  TextQueue _queue;
  std::size_t _offered = 0; // bytes since the last try to write
  std::uint64_t _lost = 0;  // texts
  bool _is_full = false;
  bool _is_dropping = false;
  bool _is_waiting = false;
  std::chrono::steady_clock::time_point _waits_since{}; // or since when the reader has last read something
};

} // namespace buttondriver
