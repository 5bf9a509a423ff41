// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "threads/thread_sanitizer.h"

#include <QSemaphore>

namespace buttondriver {

/// Counts the queued tasks: a QSemaphore that ThreadSanitizer can follow.
class TaskSemaphore {
public:
  void release() {
    thread_sanitizer::happens_before(this);
    _semaphore.release();
  }

  void acquire() {
    _semaphore.acquire();
    thread_sanitizer::happens_after(this);
  }

  /// As acquire, if that does not have to wait.
  bool tryAcquire() {
    const bool is_acquired = _semaphore.tryAcquire();
    if (is_acquired)
      thread_sanitizer::happens_after(this);
    return is_acquired;
  }

private:
  QSemaphore _semaphore;
};

} // namespace buttondriver
