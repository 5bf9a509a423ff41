// SPDX-License-Identifier: Apache-2.0
// Time stands still between two looks of a thread at it, from the start of the daemon on. What the daemon decides by
// times that it has measured it would otherwise decide as the machine happens to be loaded; and no timer runs out while
// it waits.

#include "counts/pinned/next_function.h"

#include <atomic>
#include <cstdint>
#include <ctime>
#include <sys/types.h>

namespace {

std::int64_t start_ns() {
  using Function = int(clockid_t, timespec *);
  timespec now{};
  buttondriver::counts::next_function<Function>("clock_gettime")(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

} // namespace

BUTTONDRIVER_IN_FRONT_OF(int, clock_gettime, clockid_t, timespec *time) {
  static const std::int64_t start = start_ns();
  static thread_local std::int64_t looked_ns = 0; // others' looks would count as time that a task has taken
  constexpr std::int64_t look_ns = 100;
  const std::int64_t now_ns = start + (looked_ns += look_ns);
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
