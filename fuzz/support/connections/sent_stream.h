// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

namespace buttondriver::fuzz {

/// What one client has sent, and how far the server has come with it. An independent reading of the frames.
class SentStream {
public:
  void append(const QByteArray &bytes) { _bytes += bytes; }

  /// The server has delivered `message`: it must be what comes next.
  void deliver(const QByteArray &message);
  /// The server gives up the frame that comes next, which must be a large one.
  void giveUpNext();

  /// Bytes up to the message that comes next.
  qint64 position();
  /// Whether a complete frame comes next, in the first `end` bytes of all.
  bool hasFrameWithin(qint64 end);
  bool hasFrame() { return hasFrameWithin(_bytes.size()); }
  /// Whether what comes next is a frame, complete or not, that is more than the usual read-ahead.
  bool isNextLarge();

private:
  bool isLengthThere() const { return _bytes.size() - _position >= 4; }
  quint32 length() const;
  void passFramesThatAreTooLong();

  QByteArray _bytes;
  qint64 _position = 0; // may be after the end, in a frame that is too long
};

} // namespace buttondriver::fuzz
