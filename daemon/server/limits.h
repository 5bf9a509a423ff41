// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

#include <cstddef>

/// What a connection can make the daemon hold or do at once. docs/reliability.md lists them.
namespace buttondriver::limits {

/// Bytes read ahead for a connection. Every message that fits the panel is smaller: a picture that fills a screen
/// takes 49,226 bytes.
inline constexpr qint64 read_ahead = 64 * 1024;

/// A longer frame is never put together: its connection is blocked for good.
inline constexpr quint32 largest_frame = 16 * 1024 * 1024;

/// Bytes that all connections together may hold for frames beyond the usual read-ahead. Whoever comes when they are
/// taken waits until another large frame is complete or its connection ends.
inline constexpr qint64 large_frames = 64 * 1024 * 1024;

/// Messages that a connection may deliver before others have their turn.
inline constexpr std::size_t messages_per_turn = 64;

/// Bytes of answers that a client leaves unread before it is no longer read from.
inline constexpr qint64 unread_answers = 64 * 1024;

/// Open connections. Further clients wait in the system's queue until one ends.
inline constexpr std::size_t connections = 900;

/// Pause after the system refused a connection, for want of descriptors as a rule.
inline constexpr int accept_retry_ms = 100;

} // namespace buttondriver::limits
