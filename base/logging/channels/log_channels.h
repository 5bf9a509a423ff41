// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "logging/channels/log_channel.h"
#include "logging/channels/log_place.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <unistd.h>

namespace buttondriver {

/// The two channels of the log. Each text is written at once, see LogChannel, until somebody turns gathering on: then
/// texts wait until many of them can be written together, see LogPlace. When both channels lead to the same file, all
/// their texts stay in the order in which they came.
///
/// All functions are safe to call from any thread, and one call's text stays together.
class LogChannels {
public:
  enum class Channel : std::uint8_t { output, error };

  /// How texts are gathered.
  struct Gathering {
    int output = STDOUT_FILENO; ///< descriptors, which stay the caller's and are not replaced meanwhile
    int error = STDERR_FILENO;
    LogClock clock = std::chrono::steady_clock::now;
    /// Called by any thread, which may hold locks, when status() has something new to say. It must not log.
    std::function<void()> tell;
  };

  /// What whoever turned gathering on has to know.
  struct Status {
    bool is_full = false;
    int waiting[2] = {-1, -1}; ///< descriptors whose reader has no room for what waits, -1 for none

    bool operator==(const Status &other) const {
      return is_full == other.is_full && waiting[0] == other.waiting[0] && waiting[1] == other.waiting[1];
    }
  };

  /// Those of the program: standard output and standard error. They are there until the very end of the process.
  static LogChannels &ofProcess();

  void write(Channel channel, std::string_view text);

  /// From now on texts are gathered. The calling thread promises to call writeGathered whenever it has nothing else to
  /// do, and when a descriptor that status() names has room.
  void gather(const Gathering &how);
  /// Writes what is gathered.
  void writeGathered();
  /// Writes what is gathered, unless the thread that turned gathering on is about to do that anyway. For any other
  /// thread that logs and is about to wait for something.
  void writeBeforeWaiting();
  /// Everything that `tell` was called for is told with the result.
  Status status();
  /// Writes all that is gathered, as far as a slow reader takes it within a second, and gathers no more.
  void stopGathering();
  /// Does that as well, if nobody is logging right now. For a program that is about to end for a fault of its own.
  void stopGatheringIfPossible();

private:
  LogPlace &placeOf(Channel channel);
  void writeAll();
  void finishAll();
  Status currentStatus() const;
  void tellChanges();

  std::mutex _mutex;
  LogChannel _output{STDOUT_FILENO};
  LogChannel _error{STDERR_FILENO};
  bool _is_gathering = false;
  std::optional<LogPlace> _output_place;
  std::optional<LogPlace> _error_place; // none when both are the same
  std::function<void()> _tell;
  Status _told;
  std::thread::id _gatherer;
  bool _gatherer_will_write = false;
  std::atomic<bool> _others_have_written{false}; // since texts were last written
};

} // namespace buttondriver
