// SPDX-License-Identifier: Apache-2.0
// The daemon's time stands still between two looks at it. What the daemon decides by times that it has measured it
// would otherwise decide as the machine happens to be loaded; and no timer runs out while it waits.

#include "counts/pinned/next_function.h"
#include "counts/pinned/state.h"

#include <ctime>
#include <sys/types.h>

using namespace buttondriver::counts;

BUTTONDRIVER_IN_FRONT_OF(int, clock_gettime, clockid_t clock, timespec *time) {
  using Function = int(clockid_t, timespec *);
  static Function *const next = next_function<Function>("clock_gettime");
  if (!state().is_armed.load(std::memory_order_relaxed))
    return next(clock, time);
  if (state().clock_ns == 0) {
    next(clock, time);
    state().clock_ns = std::int64_t{time->tv_sec} * 1'000'000'000 + time->tv_nsec;
  }
  constexpr std::int64_t look_ns = 100;
  const std::int64_t now_ns = state().clock_ns.fetch_add(look_ns, std::memory_order_relaxed);
  *time = {static_cast<std::time_t>(now_ns / 1'000'000'000), static_cast<long>(now_ns % 1'000'000'000)};
  return 0;
}

// Nobody sleeps while time stands still.
BUTTONDRIVER_IN_FRONT_OF(int, usleep, useconds_t) { return 0; }

// And no file changes. The daemon watches folders of the machine too, in which others write.
BUTTONDRIVER_IN_FRONT_OF(int, inotify_add_watch, int, const char *, std::uint32_t) {
  static std::atomic<int> watches{0};
  return ++watches;
}
