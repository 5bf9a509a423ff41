// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/queue/fpga_task.h"
#include "fpga/queue/task_costs.h"
#include "fpga/queue/task_list.h"

#include <QMutex>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace buttondriver {

/// How much may wait for the worker before clients should pause, and when they may go on. Times are those that the
/// device is expected to need. On a fast device the number of tasks is what counts.
struct QueueMarks {
  std::chrono::nanoseconds high_time = std::chrono::milliseconds(50);
  std::chrono::nanoseconds low_time = std::chrono::milliseconds(25);
  std::size_t high_tasks = 512;
  std::size_t low_tasks = 256;
  std::size_t high_bytes = 16 * 1024 * 1024;
  std::size_t low_bytes = 8 * 1024 * 1024;
  /// Past these the timer should queue nothing more: when the first of its own tasks has waited that long, or with so
  /// many tasks of all origins. Clients alone do not get there as a rule: past a high mark they add one turn at most.
  std::chrono::nanoseconds full_age = std::chrono::milliseconds(250);
  std::size_t full_tasks = 4096;
};

/// The pending tasks, first in, first out. It owns them. Tasks are appended by the main thread and removed by the
/// worker; the facade's semaphore counts those that the worker has to take. Nothing is ever refused: the
/// marks only show when it is time to pause. What held a task is used again for a later one.
///
/// The queue is high when more time waits than the high mark, but never with a single task, which is the one that the
/// worker carries out: so however long tasks take, one more is there when it is done.
class TaskQueue {
public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// `when_drained` is called on the removing thread when the queue was high and has come down to all low marks.
  explicit TaskQueue(const QueueMarks &marks = {}, std::function<void()> when_drained = {},
                     Clock clock = std::chrono::steady_clock::now);

  /// True when this task took the queue past one of its high marks.
  bool append(std::unique_ptr<FPGATask> task, TaskOrigin origin = TaskOrigin::client);
  /// The same for a task that is made in the queue.
  template <class Task, class... Arguments> bool emplace(TaskOrigin origin, Arguments &&...arguments) {
    std::unique_ptr<QueuedTask> queued = unused();
    queued->slot.emplace<Task>(std::forward<Arguments>(arguments)...);
    return append(std::move(queued), origin);
  }
  /// The task at the front, which stays there; null when there is none. For the one thread that removes.
  FPGATask *front();
  /// Removes the task at the front, if there is one, and deletes it.
  void removeFront();

  std::size_t size() const;
  /// What all tasks together are expected to take.
  std::chrono::nanoseconds time() const;
  /// Past a high mark, and not yet down to both low ones.
  bool isHigh() const;
  /// Past a full mark.
  bool isFull() const;

  /// What its tasks are expected to cost. The removing thread teaches it.
  TaskCosts &costs() { return _costs; }
  const TaskCosts &costs() const { return _costs; }

  /// While the result lives, `front` waits: the remover begins no further task.
  [[nodiscard]] std::unique_lock<QMutex> hold() { return std::unique_lock(_front_gate); }

private:
  using Time = std::chrono::nanoseconds;

  /// So many are kept to be used again. On the way between the threads there may be as many once more.
  static constexpr std::size_t most_unused = 1024;

  std::unique_ptr<QueuedTask> unused();
  bool append(std::unique_ptr<QueuedTask> queued, TaskOrigin origin);
  bool isPastHigh() const;
  bool isDownToLow() const;

  const QueueMarks _marks;
  const std::function<void()> _when_drained;
  const Clock _clock;
  TaskCosts _costs;
  QMutex _front_gate;
  TaskList _unused;                     // the appending thread's
  std::unique_ptr<QueuedTask> _removed; // the removing thread's
  mutable QMutex _mutex;                // without contention half the price of a std::mutex
  TaskList _tasks;
  TaskList _given_back;                                            // by the remover, for the appending thread
  std::size_t _clients_tasks = 0;                                  // of _tasks
  Time _clients_time{};                                            // of these
  Time _time{};                                                    // of all
  std::deque<std::chrono::steady_clock::time_point> _timer_starts; // when its tasks were appended
  std::size_t _bytes = 0;
  bool _is_high = false;
};

} // namespace buttondriver
