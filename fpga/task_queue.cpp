#include "fpga/task_queue.h"

namespace buttondriver {

void TaskQueue::append(std::unique_ptr<FPGATask> task) {
  const std::lock_guard lock(_mutex);
  _tasks.push_back(std::move(task));
}

FPGATask *TaskQueue::front() const {
  const std::lock_guard lock(_mutex);
  return _tasks.empty() ? nullptr : _tasks.front().get();
}

void TaskQueue::remove_front() {
  std::unique_ptr<FPGATask> removed; // deleted after the lock is released
  const std::lock_guard lock(_mutex);
  if (_tasks.empty())
    return;
  removed = std::move(_tasks.front());
  _tasks.pop_front();
}

std::size_t TaskQueue::size() const {
  const std::lock_guard lock(_mutex);
  return _tasks.size();
}

} // namespace buttondriver
