// SPDX-License-Identifier: Apache-2.0
#pragma once

// With ThreadSanitizer gcc defines a macro and clang a feature.
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

/// Hints for ThreadSanitizer, which cannot look into Qt as Debian builds it: what a thread did before
/// `happens_before(x)` is seen by the thread that passes `happens_after(x)` later. Without the sanitizer both are
/// nothing. They are used only where Qt itself orders the two.
namespace buttondriver::thread_sanitizer {

inline void happens_before([[maybe_unused]] void *object) {
#if defined(BUTTONDRIVER_THREAD_SANITIZER)
  __tsan_release(object);
#endif
}

inline void happens_after([[maybe_unused]] void *object) {
#if defined(BUTTONDRIVER_THREAD_SANITIZER)
  __tsan_acquire(object);
#endif
}

} // namespace buttondriver::thread_sanitizer
