#include "net/frame_reader.h"

#include "bytes/byte_view.h"
#include "protocol/framing.h"

#include <QIODevice>

#include <algorithm>

namespace buttondriver {

std::vector<QByteArray> take_frames(QIODevice &stream) {
  std::vector<QByteArray> messages;
  while (stream.bytesAvailable() > 0) {
    char prefix[frame_prefix_size];
    if (stream.peek(prefix, sizeof prefix) < qint64{sizeof prefix})
      break;
    const std::uint32_t length = ByteView(prefix, sizeof prefix).big_endian_32(0);
    if (stream.bytesAvailable() < qint64{frame_bytes_needed(length)})
      break;
    stream.read(prefix, sizeof prefix);
    // Never more than is there: the length may have wrapped.
    messages.push_back(stream.read(std::min<qint64>(length, stream.bytesAvailable())));
  }
  return messages;
}

} // namespace buttondriver
