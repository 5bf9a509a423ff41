// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <ctime>

namespace buttondriver::bench {

/// The variable of the environment that names the file which holds the DeviceLog. Without it nobody gets to see the
/// log.
inline constexpr const char *device_log_variable = "BUTTONDRIVER_LATENCY_LOG";
/// Without a file: how many microseconds a transfer takes at least.
inline constexpr const char *transfer_time_variable = "BUTTONDRIVER_LATENCY_TRANSFER_US";

/// The clock that all times here are taken from; the same one in all processes of a machine.
inline std::int64_t now_ns() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

/// A byte for the LED command register, and when its transfer began.
struct LedCommand {
  std::int64_t at_ns = 0;
  std::uint8_t command = 0;
};

/// What the device in the daemon tells the measuring program, in memory that both share. One thread at a time writes.
/// All zeros is its beginning.
struct DeviceLog {
  static constexpr std::uint32_t room = 1U << 16;

  std::atomic<std::int64_t> transfer_ns; ///< how long a transfer takes at least; the program sets it before the start
  std::atomic<std::int64_t> busy_ns;     ///< sum of the times of all transfers that have ended; 0 when they take none
  std::atomic<std::uint64_t> transfers;
  std::atomic<std::uint64_t> pixel_runs;   ///< transfers of several words: each text line and each picture has one
  std::atomic<std::uint32_t> led_commands; ///< how many have come; those beyond `room` are counted only
  std::array<LedCommand, room> led_command;
};

static_assert(std::atomic<std::int64_t>::is_always_lock_free && std::atomic<std::uint64_t>::is_always_lock_free &&
              std::atomic<std::uint32_t>::is_always_lock_free);

} // namespace buttondriver::bench
