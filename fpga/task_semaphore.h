#pragma once

#include <QSemaphore>

#if defined(__SANITIZE_THREAD__)
extern "C" void __tsan_acquire(void *address);
extern "C" void __tsan_release(void *address);
#endif

namespace buttondriver {

/// Counts the queued tasks. A QSemaphore that ThreadSanitizer can follow: Debian's Qt is not instrumented, so the
/// sanitizer has to be told that a release happens before the acquire that it lets through.
class TaskSemaphore {
public:
  void release() {
#if defined(__SANITIZE_THREAD__)
    __tsan_release(this);
#endif
    _semaphore.release();
  }

  void acquire() {
    _semaphore.acquire();
#if defined(__SANITIZE_THREAD__)
    __tsan_acquire(this);
#endif
  }

private:
  QSemaphore _semaphore;
};

} // namespace buttondriver
