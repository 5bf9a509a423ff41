#pragma once

#include <QSemaphore>

// gcc tells by a macro that ThreadSanitizer is on, clang by a feature.
#if defined(__SANITIZE_THREAD__)
#define BUTTONDRIVER_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define BUTTONDRIVER_THREAD_SANITIZER 1
#endif
#endif

#if defined(BUTTONDRIVER_THREAD_SANITIZER)
extern "C" void __tsan_acquire(void *address);
extern "C" void __tsan_release(void *address);
#endif

namespace buttondriver {

/// Counts the queued tasks. A QSemaphore that ThreadSanitizer can follow: Debian's Qt is not instrumented, so the
/// sanitizer has to be told that a release happens before the acquire that it lets through.
class TaskSemaphore {
public:
  void release() {
#if defined(BUTTONDRIVER_THREAD_SANITIZER)
    __tsan_release(this);
#endif
    _semaphore.release();
  }

  void acquire() {
    _semaphore.acquire();
#if defined(BUTTONDRIVER_THREAD_SANITIZER)
    __tsan_acquire(this);
#endif
  }

private:
  QSemaphore _semaphore;
};

} // namespace buttondriver
