// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <atomic>
#include <cstdint>
#include <thread>

namespace buttondriver::yardsticks {

/// Reads a server's log as a log service would, so that writing it costs what it costs, and counts its lines. The
/// servers that write to it have to end before this object does.
class LogReader {
public:
  /// Throws std::runtime_error when there is no pipe.
  LogReader();
  ~LogReader();
  LogReader(const LogReader &) = delete;
  LogReader &operator=(const LogReader &) = delete;

  /// Where the log goes.
  int descriptor() const { return _write_end.get(); }
  /// Complete lines so far.
  std::uint64_t lines() const { return _lines; }

private:
  void run();

  OwnedDescriptor _read_end;
  OwnedDescriptor _write_end;
  std::atomic<std::uint64_t> _lines{0};
  std::thread _thread;
};

} // namespace buttondriver::yardsticks
