// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/fpga_task.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace buttondriver {

/// How much may wait for the worker before clients should pause, and when they may go on.
struct QueueMarks {
  std::size_t high_tasks = 512;
  std::size_t low_tasks = 256;
  std::size_t high_bytes = 16 * 1024 * 1024;
  std::size_t low_bytes = 8 * 1024 * 1024;
  /// Tasks of all origins past which the timer should queue nothing more. Clients alone do not get there: past the high
  /// mark they add one turn at most, 64 messages of 24 tasks.
  std::size_t full_tasks = 4096;
};

/// Who asked for a task.
enum class TaskOrigin : std::uint8_t {
  client,
  timer, ///< does not count for the high and the low marks: clients cannot help that it is there
};

/// The pending tasks, first in, first out. It owns them. Tasks are appended by the main thread and removed by the
/// worker; the facade's semaphore counts those that the worker has to take. Nothing is ever refused: the
/// marks only show when it is time to pause.
class TaskQueue {
public:
  /// `when_drained` is called on the removing thread when the queue was high and has come down to both low marks.
  explicit TaskQueue(const QueueMarks &marks = {}, std::function<void()> when_drained = {});

  /// True when this task took the queue past one of its high marks.
  bool append(std::unique_ptr<FPGATask> task, TaskOrigin origin = TaskOrigin::client);
  /// The task at the front, which stays there; null when there is none. For the one thread that removes.
  FPGATask *front();
  /// Removes the task at the front, if there is one, and deletes it.
  void removeFront();

  std::size_t size() const;
  /// Past a high mark, and not yet down to both low ones.
  bool isHigh() const;
  /// Past the full mark.
  bool isFull() const { return size() > _marks.full_tasks; }

  /// While the result lives, `front` waits: the remover begins no further task.
  [[nodiscard]] std::unique_lock<std::mutex> hold() { return std::unique_lock(_front_gate); }

private:
  struct Entry {
    std::unique_ptr<FPGATask> task;
    std::size_t bytes;
    TaskOrigin origin;
  };

  const QueueMarks _marks;
  const std::function<void()> _when_drained;
  std::mutex _front_gate;
  mutable std::mutex _mutex;
  std::deque<Entry> _tasks;
  std::size_t _clients_tasks = 0; // of _tasks
  std::size_t _bytes = 0;
  bool _is_high = false;
};

} // namespace buttondriver
