// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace buttondriver {

/// `message` with its length before it.
QByteArray framed(const QByteArray &message);

/// Cuts what arrives on one connection into messages, however the stream has cut it. Not thread-safe.
class FrameCutter {
public:
  /// A message that says that it is longer than `longest_message` bytes ends the cutting: nobody could tell where the
  /// next one begins without waiting for all of it.
  explicit FrameCutter(std::uint32_t longest_message) : _longest_message(longest_message) {}

  /// The messages that are whole with these bytes, in order, without their lengths. A message may be empty. A length
  /// that wraps, as framing.h says, gives a message of all that is there.
  std::vector<QByteArray> take(const QByteArray &bytes);

  /// A message was too long; from there on there are no more.
  bool hasLostTrack() const { return _has_lost_track; }
  /// Bytes of a frame that is not whole yet.
  std::int64_t unfinished() const { return _unfinished.size(); }

private:
  std::uint32_t _longest_message;
  QByteArray _unfinished;
  bool _has_lost_track = false;
};

} // namespace buttondriver
