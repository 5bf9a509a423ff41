// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/queue/task_costs.h"

#include <cstddef>

namespace buttondriver {

/// One piece of hardware work. Made on the main thread, carried out and deleted on the worker thread; deleted without
/// being carried out when the facade goes first.
class FPGATask {
public:
  FPGATask() = default;
  virtual ~FPGATask() = default;
  FPGATask(const FPGATask &) = delete;
  FPGATask &operator=(const FPGATask &) = delete;

  /// Called once, on the worker thread, with the facade's mutex held.
  virtual void execute() = 0;

  /// Tasks of one kind that keep about as much alive are expected to take about as long.
  virtual TaskKind kind() const { return TaskKind::other; }

  /// Bytes that the task keeps alive beside itself: a text, a picture.
  virtual std::size_t keptBytes() const { return 0; }
};

} // namespace buttondriver
