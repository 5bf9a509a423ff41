// SPDX-License-Identifier: Apache-2.0
#include "server/frames/frame_reader.h"

#include "bytes/byte_view.h"
#include "bytes/view_of.h"
#include "protocol/records.h"

#include <QIODevice>

#include <algorithm>

namespace buttondriver {

namespace {

constexpr std::size_t opcode_size = 4;
constexpr quint32 ping_size = sizeof(BMS_Ping);
static_assert(ping_size == opcode_size);

/// Whether the message asks for its bytes to be logged, a line for each. Its opcode is enough.
bool asks_for_lines(ByteView message) {
  return message.size() > 0 && message.bigEndian32(0) == TYPE_NULL_MESSAGE::code;
}

/// `stream` begins with a complete frame.
bool is_chosen(FrameChoice choice, QIODevice &stream, const FrameHead &head) {
  if (choice == FrameChoice::all || choice == FrameChoice::none)
    return choice == FrameChoice::all;
  char beginning[frame_prefix_size + opcode_size];
  const qint64 peeked =
      std::min<qint64>(stream.peek(beginning, sizeof beginning), qint64{head.length} + frame_prefix_size);
  const ByteView message = ByteView(beginning, static_cast<std::size_t>(peeked)).from(frame_prefix_size);
  if (choice == FrameChoice::no_null_messages)
    return !asks_for_lines(message);
  return head.length == ping_size && message.bigEndian32(0) == BMS_Ping::code;
}

} // namespace

FrameHead peek_frame(QIODevice &stream) {
  char prefix[frame_prefix_size];
  const qint64 peeked = std::max<qint64>(stream.peek(prefix, sizeof prefix), 0);
  return frame_head(ByteView(prefix, static_cast<std::size_t>(peeked)), static_cast<quint64>(stream.bytesAvailable()));
}

std::vector<QByteArray> take_frames(QIODevice &stream, std::size_t limit, FrameChoice choice, const IsLast &is_last) {
  std::vector<QByteArray> messages;
  while (messages.size() < limit) {
    const FrameHead head = peek_frame(stream);
    if (!head.is_complete || !is_chosen(choice, stream, head))
      break;
    stream.skip(frame_prefix_size);
    // Never more than is there: the length may have wrapped.
    messages.push_back(stream.read(std::min<qint64>(head.length, stream.bytesAvailable())));
    // Asked about each one: who asks may count them.
    const bool is_told_last = is_last && is_last(messages.back());
    if (is_told_last || asks_for_lines(view_of(messages.back())))
      break;
  }
  return messages;
}

} // namespace buttondriver
