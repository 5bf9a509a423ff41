// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/queue/fpga_task.h"

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace buttondriver {

/// A place for one task at a time, to be used again and again: a task that is made here takes no memory beside it.
class TaskSlot {
public:
  TaskSlot() = default;
  ~TaskSlot() { clear(); }
  TaskSlot(const TaskSlot &) = delete;
  TaskSlot &operator=(const TaskSlot &) = delete;

  /// Makes a task here. The slot is empty before.
  template <class Task, class... Arguments> void emplace(Arguments &&...arguments) {
    static_assert(sizeof(Task) <= room && alignof(Task) <= alignof(std::max_align_t));
    _task = new (_room) Task(std::forward<Arguments>(arguments)...);
    _is_here = true;
  }
  /// Owns a task that was made elsewhere and may be of any size, or none. The slot is empty before.
  void own(std::unique_ptr<FPGATask> task) {
    _task = task.release();
    _is_here = false;
  }

  /// Null while there is none.
  FPGATask *task() const { return _task; }

  /// Destroys the task, if there is one.
  void clear() {
    FPGATask *const task = std::exchange(_task, nullptr);
    if (!_is_here)
      delete task;
    else if (task)
      task->~FPGATask();
  }

private:
  /// Enough for each task of the facade.
  static constexpr std::size_t room = 80;

  FPGATask *_task = nullptr;
  bool _is_here = false;
  alignas(std::max_align_t) std::byte _room[room];
};

} // namespace buttondriver
