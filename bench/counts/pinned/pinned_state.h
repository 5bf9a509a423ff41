// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace buttondriver::counts {

/// The variable of the environment that names the file which holds the PinnedState. Without it nothing is pinned.
inline constexpr const char *pinned_state_variable = "BUTTONDRIVER_COUNTS_STATE";

/// What is counted of what the daemon calls.
enum class Call : std::size_t { allocation, log_write, transfer, send, read, poll, futex, other };
inline constexpr std::size_t call_kinds = 8;

/// What the event loop of the daemon may do. The program sets these; the daemon goes back to `parked` by itself.
namespace gate {
inline constexpr std::uint32_t running = 0; ///< until it has nothing left to do
inline constexpr std::uint32_t parked = 1;  ///< nothing, whatever arrives
inline constexpr std::uint32_t look = 2;    ///< run if the worker has left something to do
inline constexpr std::uint32_t zero = 3;    ///< begin counting instructions at 0, and be parked again
inline constexpr std::uint32_t dump = 4;    ///< write how many instructions there were, and be parked again
} // namespace gate

/// What the daemon and the program that counts share. All zeros is its beginning. The words of 32 bits are futexes.
struct PinnedState {
  std::atomic<std::uint32_t> is_armed; ///< the program sets it when the daemon listens; nothing waits before
  std::atomic<std::uint32_t> gate;
  std::array<std::atomic<std::uint64_t>, call_kinds> calls;
};

static_assert(std::atomic<std::uint64_t>::is_always_lock_free && std::atomic<std::uint32_t>::is_always_lock_free);

} // namespace buttondriver::counts
