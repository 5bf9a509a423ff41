// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <cstdint>

/// A recording is text, one line for each frame, after a line that says what it is:
///
///     buttonctl recording 1
///     51234 1 000000040000000c
///
/// The line of a frame holds the microseconds since the recording began, at which the frame's last byte came; the
/// number of its connection, counted from 1 in the order in which they were accepted; and the frame in hexadecimal, its
/// 4-byte length in front. Items are parted by blanks, and times never go backwards. Empty lines, and lines that start
/// with "#", are passed over. A later version of this form has another number in the first line.
namespace buttondriver::buttonctl {

inline constexpr char recording_title[] = "buttonctl recording ";
inline constexpr int recording_version = 1;

struct RecordedFrame {
  std::int64_t time_us;
  std::int32_t connection;
  QByteArray bytes; ///< as they lie on the stream, the length in front
};

} // namespace buttondriver::buttonctl
