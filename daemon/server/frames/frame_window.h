// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/framing.h"
#include "server/frames/frame_choice.h"
#include "server/limits.h"

#include <QByteArray>

#include <cstddef>

class QIODevice;

namespace buttondriver {

/// The frames that a stream begins with. It looks at many bytes of the stream at once: what a stream costs for each
/// call is more than a small frame. While it lives nobody else reads the stream, and nothing more arrives there.
class FrameWindow {
public:
  explicit FrameWindow(QIODevice &stream);
  /// What was taken is gone from the stream, all else is still there.
  ~FrameWindow();
  FrameWindow(const FrameWindow &) = delete;
  FrameWindow &operator=(const FrameWindow &) = delete;

  /// The frame that comes first now.
  const FrameHead &head() const { return _head; }
  /// Bytes that are there from that frame on.
  qint64 left() const { return _left; }
  /// Whether that frame is complete and to be taken. A frame may be empty.
  bool isToBeTaken(FrameChoice choice) const;
  /// Takes it, and makes `message` its message without the length. It is complete.
  void take(QByteArray &message);

private:
  ByteView shown() const { return {_window + _begin, _end - _begin}; }
  void look();
  void moveOn();

  QIODevice &_stream;
  qint64 _left;
  FrameHead _head;
  std::size_t _begin = 0; // of the first frame, in the window; what is before it was taken
  std::size_t _end = 0;
  char _window[limits::frame_window];
};

} // namespace buttondriver
