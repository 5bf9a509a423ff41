// SPDX-License-Identifier: Apache-2.0
#include "server/frame_reader.h"

#include "bytes/byte_view.h"
#include "bytes/view_of.h"
#include "protocol/records.h"

#include <QIODevice>

#include <algorithm>

namespace buttondriver {

namespace {

constexpr quint32 ping_size = sizeof(BMS_Ping);

bool is_ping(QIODevice &stream, const FrameHead &head) {
  if (head.length != ping_size)
    return false;
  char frame[frame_prefix_size + ping_size];
  stream.peek(frame, sizeof frame);
  return ByteView(frame, sizeof frame).bigEndian32(frame_prefix_size) == BMS_Ping::code;
}

/// Whether the message asks for its bytes to be logged, a line for each.
bool asks_for_lines(const QByteArray &message) {
  return !message.isEmpty() && view_of(message).bigEndian32(0) == TYPE_NULL_MESSAGE::code;
}

} // namespace

FrameHead peek_frame(QIODevice &stream) {
  char prefix[frame_prefix_size];
  const qint64 peeked = std::max<qint64>(stream.peek(prefix, sizeof prefix), 0);
  return frame_head(ByteView(prefix, static_cast<std::size_t>(peeked)), static_cast<quint64>(stream.bytesAvailable()));
}

std::vector<QByteArray> take_frames(QIODevice &stream, std::size_t limit, FrameChoice choice) {
  std::vector<QByteArray> messages;
  if (choice == FrameChoice::none)
    return messages;
  while (messages.size() < limit) {
    const FrameHead head = peek_frame(stream);
    if (!head.is_complete)
      break;
    if (choice == FrameChoice::leading_pings && !is_ping(stream, head))
      break;
    stream.skip(frame_prefix_size);
    // Never more than is there: the length may have wrapped.
    messages.push_back(stream.read(std::min<qint64>(head.length, stream.bytesAvailable())));
    if (asks_for_lines(messages.back()))
      break;
  }
  return messages;
}

} // namespace buttondriver
