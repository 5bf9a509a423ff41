// SPDX-License-Identifier: Apache-2.0
#include "server/frames/frame_reader.h"

#include "bytes/byte_view.h"

#include <QIODevice>

#include <algorithm>

namespace buttondriver {

FrameHead peek_frame(QIODevice &stream) {
  char prefix[frame_prefix_size];
  const qint64 peeked = std::max<qint64>(stream.peek(prefix, sizeof prefix), 0);
  return frame_head(ByteView(prefix, static_cast<std::size_t>(peeked)), static_cast<quint64>(stream.bytesAvailable()));
}

std::vector<QByteArray> take_frames(QIODevice &stream, std::size_t limit, FrameChoice choice) {
  FrameWindow window(stream);
  MessageRoom room;
  return take_frames(window, room, limit, choice, [](const QByteArray &) { return false; });
}

} // namespace buttondriver
