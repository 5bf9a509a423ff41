// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/frames.h"

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace buttondriver::buttonctl {

/// Finds the frames in the bytes of one connection, however the stream has cut them.
class FrameSplitter {
public:
  /// A frame whose length is more, its length not counted, ends the splitting of its connection. The largest picture
  /// for a screen has some 50 KB, so that this is room enough; it also keeps out the lengths from 0xFFFFFFFC on, whose
  /// frames are whatever is there when the daemon looks.
  static constexpr std::uint32_t longest_message = 16 * 1024 * 1024;

  /// The frames that are whole with these bytes, each with its length in front.
  std::vector<QByteArray> take(const QByteArray &bytes);

  /// A frame was too long; from there on there are no more.
  bool hasLostTrack() const { return _cutter.hasLostTrack(); }
  /// Bytes of a frame that is not whole yet.
  std::int64_t unfinished() const { return _cutter.unfinished(); }

private:
  FrameCutter _cutter{longest_message};
};

} // namespace buttondriver::buttonctl
