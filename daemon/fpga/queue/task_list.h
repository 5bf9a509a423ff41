// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/queue/task_slot.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace buttondriver {

/// Who asked for a task.
enum class TaskOrigin : std::uint8_t {
  client,
  timer, ///< does not count for the high and the low marks: clients cannot help that it is there
};

/// A task in the queue, and what it counts for.
struct QueuedTask {
  TaskSlot slot;
  std::chrono::nanoseconds time{}; ///< expected when it was appended
  std::size_t bytes = 0;
  TaskOrigin origin = TaskOrigin::client;
  QueuedTask *next = nullptr; ///< the list's own affair
};

/// One behind the other; the list owns them. They stay where they are in memory when they go from one list to another.
class TaskList {
public:
  TaskList() = default;
  ~TaskList() {
    while (pop()) {
    }
  }
  TaskList(const TaskList &) = delete;
  TaskList &operator=(const TaskList &) = delete;

  bool empty() const { return _size == 0; }
  std::size_t size() const { return _size; }
  /// Null when there is none.
  QueuedTask *front() const { return _first; }

  void pushBack(std::unique_ptr<QueuedTask> task) {
    QueuedTask *const last = task.release();
    last->next = nullptr;
    (_first ? _last->next : _first) = last;
    _last = last;
    ++_size;
  }
  /// The one at the front, or null.
  std::unique_ptr<QueuedTask> pop() {
    std::unique_ptr<QueuedTask> popped(_first);
    if (popped) {
      _first = popped->next;
      --_size;
    }
    return popped;
  }
  void swap(TaskList &other) {
    std::swap(_first, other._first);
    std::swap(_last, other._last);
    std::swap(_size, other._size);
  }

private:
  QueuedTask *_first = nullptr;
  QueuedTask *_last = nullptr; // means nothing while there is none
  std::size_t _size = 0;
};

} // namespace buttondriver
