// SPDX-License-Identifier: Apache-2.0
#include "fpga/queue/task_queue.h"

#include <utility>

namespace buttondriver {

TaskQueue::TaskQueue(const QueueMarks &marks, std::function<void()> when_drained, Clock clock)
    : _marks(marks), _when_drained(std::move(when_drained)), _clock(std::move(clock)) {}

bool TaskQueue::append(std::unique_ptr<FPGATask> task, TaskOrigin origin) {
  std::unique_ptr<QueuedTask> queued = unused();
  queued->slot.own(std::move(task));
  return append(std::move(queued), origin);
}

std::unique_ptr<QueuedTask> TaskQueue::unused() {
  if (_unused.empty()) {
    const std::lock_guard lock(_mutex);
    _unused.swap(_given_back);
  }
  std::unique_ptr<QueuedTask> unused = _unused.pop();
  return unused ? std::move(unused) : std::make_unique<QueuedTask>();
}

bool TaskQueue::append(std::unique_ptr<QueuedTask> queued, TaskOrigin origin) {
  const FPGATask *const task = queued->slot.task();
  const std::size_t bytes = task ? task->keptBytes() : 0;
  const Time time = task ? _costs.of(task->kind(), bytes) : Time::zero();
  queued->bytes = bytes;
  queued->time = time;
  queued->origin = origin;
  const std::lock_guard lock(_mutex);
  _tasks.pushBack(std::move(queued));
  if (origin == TaskOrigin::client) {
    ++_clients_tasks;
    _clients_time += time;
  } else {
    _timer_starts.push_back(_clock());
  }
  _time += time;
  _bytes += bytes;
  if (_is_high || !isPastHigh())
    return false;
  _is_high = true;
  return true;
}

FPGATask *TaskQueue::front() {
  const std::lock_guard gate(_front_gate);
  const std::lock_guard lock(_mutex);
  return _tasks.empty() ? nullptr : _tasks.front()->slot.task();
}

void TaskQueue::removeFront() {
  bool is_drained = false;
  {
    const std::lock_guard lock(_mutex);
    if (_tasks.empty())
      return;
    if (_removed && _given_back.size() < most_unused)
      _given_back.pushBack(std::move(_removed));
    _removed = _tasks.pop();
    if (_removed->origin == TaskOrigin::client) {
      --_clients_tasks;
      _clients_time -= _removed->time;
    } else {
      _timer_starts.pop_front();
    }
    _time -= _removed->time;
    _bytes -= _removed->bytes;
    is_drained = _is_high && isDownToLow();
    if (is_drained)
      _is_high = false;
  }
  _removed->slot.clear();
  if (is_drained && _when_drained)
    _when_drained();
}

bool TaskQueue::isPastHigh() const {
  return (_clients_time > _marks.high_time && _clients_tasks > 1) || _clients_tasks > _marks.high_tasks ||
         _bytes > _marks.high_bytes;
}

bool TaskQueue::isDownToLow() const {
  return (_clients_time <= _marks.low_time || _clients_tasks <= 1) && _clients_tasks <= _marks.low_tasks &&
         _bytes <= _marks.low_bytes;
}

std::size_t TaskQueue::size() const {
  const std::lock_guard lock(_mutex);
  return _tasks.size();
}

bool TaskQueue::isFull() const {
  const std::lock_guard lock(_mutex);
  return _tasks.size() > _marks.full_tasks ||
         (!_timer_starts.empty() && _clock() - _timer_starts.front() > _marks.full_age);
}

bool TaskQueue::isHigh() const {
  const std::lock_guard lock(_mutex);
  return _is_high;
}

TaskQueue::Time TaskQueue::time() const {
  const std::lock_guard lock(_mutex);
  return _time;
}

} // namespace buttondriver
