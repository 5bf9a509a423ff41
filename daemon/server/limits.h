// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

#include <chrono>
#include <cstddef>

/// What a connection can make the daemon hold or do at once. docs/reliability.md lists them.
namespace buttondriver::limits {

/// Bytes read ahead for a connection. Every message that fits the panel is smaller: a picture that fills a screen
/// takes 49,226 bytes.
inline constexpr qint64 read_ahead = 64 * 1024;

/// Bytes that are looked at together when a connection's frames are taken.
inline constexpr std::size_t frame_window = 4096;

/// A longer frame is never put together: it is skipped.
inline constexpr quint32 largest_frame = 16 * 1024 * 1024;

/// Bytes that all connections together may hold for frames beyond the usual read-ahead. Room for one largest frame is
/// kept apart, see LargeFrameBudget.
inline constexpr qint64 large_frames = 64 * 1024 * 1024;

/// Bytes by which a connection's share of that grows.
inline constexpr qint64 large_frame_step = 256 * 1024;

/// How long the frame in the kept room may stop growing while another one wants it.
inline constexpr std::chrono::seconds large_frame_patience{10};

/// Messages that a connection may deliver before others have their turn.
inline constexpr std::size_t messages_per_turn = 64;

/// Device time that a turn may bring; its last message may go beyond.
inline constexpr std::chrono::nanoseconds time_per_turn = std::chrono::milliseconds(10);

/// What a message counts for that costs the device less: the event loop has work with it too.
inline constexpr std::chrono::nanoseconds least_time_of_a_message = std::chrono::microseconds(20);

/// Answers that a client may leave unread. Further ones are dropped.
inline constexpr qint64 owed_answers = 1'000'000;

/// Open connections, where the process may open as many descriptors.
inline constexpr std::size_t connections = 900;

/// Descriptors that are left for everything else.
inline constexpr std::size_t other_descriptors = 64;

/// Open connections that this process can have: `connections`, or less where its limit on descriptors is low.
std::size_t possible_connections();

/// Pause after the system refused a connection, for want of descriptors as a rule.
inline constexpr int accept_retry_ms = 100;

/// How often those that wait for the budget of large frames ask again.
inline constexpr int budget_retry_ms = 1000;

} // namespace buttondriver::limits
