#pragma once

#include "fpga/fpga_task.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>

namespace buttondriver {

/// The pending tasks, first in, first out. It owns them. Tasks are appended by the main thread and removed by the
/// worker; how many there are to take, the worker learns from the facade's semaphore.
class TaskQueue {
public:
  void append(std::unique_ptr<FPGATask> task);
  /// The task at the front, which stays there; null when there is none. For the one thread that removes.
  FPGATask *front() const;
  /// Removes the task at the front, if there is one, and deletes it.
  void remove_front();
  std::size_t size() const;

private:
  mutable std::mutex _mutex;
  std::deque<std::unique_ptr<FPGATask>> _tasks;
};

} // namespace buttondriver
