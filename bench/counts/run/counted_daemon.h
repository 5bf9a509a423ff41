// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "counts/pinned/pinned_state.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <cstdint>
#include <optional>
#include <string>

namespace buttondriver::counts {

/// A daemon under callgrind whose event loop, clock and device do what this program says, so that it carries out the
/// same instructions each time. Its log goes to a file. Whatever is waited for may take a minute; then, and when the
/// daemon has ended, functions throw std::runtime_error.
class CountedDaemon {
public:
  /// `program` is the daemon's file. Returns when the daemon listens.
  explicit CountedDaemon(const std::string &program);
  ~CountedDaemon();
  CountedDaemon(const CountedDaemon &) = delete;
  CountedDaemon &operator=(const CountedDaemon &) = delete;

  std::uint16_t port() const { return _port; }
  PinnedState &state() { return *_state; }

  /// Until the event loop is parked and the worker sleeps.
  void waitUntilParked() const;
  /// Lets the event loop go on until neither it nor the worker has anything left to do.
  void run();

  void startCounting() { command(gate::zero); }
  /// How many instructions there were since the last start.
  double takeInstructions();

private:
  void mapState(const std::string &file);
  void command(std::uint32_t value);

  test::TemporaryFolder _root;
  PinnedState *_state = nullptr;
  std::optional<bench::ChildProcess> _process;
  std::uint16_t _port = 0;
  int _dumps = 0;
};

} // namespace buttondriver::counts
