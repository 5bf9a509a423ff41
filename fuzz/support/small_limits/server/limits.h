// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

#include <chrono>
#include <cstddef>

/// In place of daemon/server/limits.h, with numbers so small that a short input reaches each of them.
namespace buttondriver::limits {

inline constexpr qint64 read_ahead = 256;
inline constexpr std::size_t frame_window = 32;
inline constexpr quint32 largest_frame = 2048;
inline constexpr qint64 large_frames = 3072;
inline constexpr qint64 large_frame_step = 128;
inline constexpr std::size_t messages_per_turn = 4;
inline constexpr std::chrono::nanoseconds time_per_turn = std::chrono::milliseconds(10);
inline constexpr std::chrono::nanoseconds least_time_of_a_message = std::chrono::microseconds(20);
inline constexpr qint64 owed_answers = 16;
inline constexpr std::size_t connections = 8;
inline constexpr std::size_t other_descriptors = 64;
inline constexpr int accept_retry_ms = 0;

/// Who dallies loses the room at once, or never. The target sets these two before it makes a server.
inline std::chrono::hours large_frame_patience{0};
inline int budget_retry_ms = 0;

std::size_t possible_connections();

} // namespace buttondriver::limits
