// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/connections/sent_stream.h"

#include "bytes/byte_view.h"
#include "fuzz/support/require.h"
#include "protocol/framing.h"
#include "server/limits.h"

#include <algorithm>

namespace buttondriver::fuzz {

quint32 SentStream::length() const {
  return ByteView(_bytes.constData() + _position, frame_prefix_size).bigEndian32(0);
}

void SentStream::passFramesThatAreTooLong() {
  while (isLengthThere() && frame_bytes_needed(length()) >= frame_prefix_size && length() > limits::largest_frame)
    _position += qint64{length()} + frame_prefix_size;
}

void SentStream::deliver(const QByteArray &message) {
  passFramesThatAreTooLong();
  require(isLengthThere(), "nothing is delivered that was not sent");
  const qint64 begin = _position + frame_prefix_size;
  // A length that wraps stands for whatever was there.
  if (frame_bytes_needed(length()) >= frame_prefix_size)
    require(message.size() == qint64{length()}, "a message is as long as its frame");
  require(begin + message.size() <= _bytes.size(), "nothing is delivered before it was sent");
  require(std::equal(message.begin(), message.end(), _bytes.begin() + begin), "messages are delivered once, in order");
  _position = begin + message.size();
}

void SentStream::giveUpNext() {
  require(isNextLarge(), "only a large frame is given up");
  _position += qint64{length()} + frame_prefix_size;
}

qint64 SentStream::position() {
  passFramesThatAreTooLong();
  return _position;
}

bool SentStream::hasFrameWithin(qint64 end) {
  passFramesThatAreTooLong();
  return isLengthThere() && _position + frame_prefix_size <= end &&
         _position + qint64{frame_bytes_needed(length())} <= end;
}

bool SentStream::isNextLarge() {
  passFramesThatAreTooLong();
  return isLengthThere() && frame_bytes_needed(length()) > limits::read_ahead;
}

} // namespace buttondriver::fuzz
