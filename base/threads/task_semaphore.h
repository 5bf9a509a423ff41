// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <semaphore.h>

namespace buttondriver {

/// Counts the queued tasks, for one thread that takes them and any that queue them. The system is asked only when that
/// thread has to wait, and when it has to be woken: ThreadSanitizer can follow all of it.
class TaskSemaphore {
public:
  TaskSemaphore() { ::sem_init(&_wake_up, /*pshared=*/0, 0); }
  ~TaskSemaphore() { ::sem_destroy(&_wake_up); }
  TaskSemaphore(const TaskSemaphore &) = delete;
  TaskSemaphore &operator=(const TaskSemaphore &) = delete;

  void release() {
    if (_count.fetch_add(1) >= 0)
      return;
    _wake_ups.fetch_add(1, std::memory_order_relaxed);
    ::sem_post(&_wake_up);
  }

  void acquire() {
    if (_count.fetch_sub(1) > 0)
      return;
    while (::sem_wait(&_wake_up) != 0 && errno == EINTR) {
    }
  }

  /// As acquire, if that does not have to wait.
  bool tryAcquire() {
    if (_count.load() <= 0)
      return false;
    _count.fetch_sub(1);
    return true;
  }

  /// How often the taking thread waited and was woken.
  std::uint32_t wakeUps() const { return _wake_ups.load(std::memory_order_relaxed); }

private:
  std::atomic<int> _count{0}; // below zero while the taking thread waits
  std::atomic<std::uint32_t> _wake_ups{0};
  sem_t _wake_up{};
};

} // namespace buttondriver
