// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <climits>
#include <cstdint>
#include <ctime>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace buttondriver::counts {

/// Waits as long as `word` is `value`, at most for `limit`, null for ever; may return early. `word` may lie in memory
/// that processes share.
inline void wait_while(const std::atomic<std::uint32_t> &word, std::uint32_t value, const timespec *limit = nullptr) {
  ::syscall(SYS_futex, &word, FUTEX_WAIT, value, limit, nullptr, 0);
}

/// Ends all waiting for `word`.
inline void wake(const std::atomic<std::uint32_t> &word) {
  ::syscall(SYS_futex, &word, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

} // namespace buttondriver::counts
