// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/frame_splitter.h"

#include "bytes/byte_view.h"
#include "protocol/framing.h"

namespace buttondriver::buttonctl {

std::vector<QByteArray> FrameSplitter::take(const QByteArray &bytes) {
  std::vector<QByteArray> frames;
  if (_has_lost_track)
    return frames;
  _unfinished += bytes;
  const ByteView view(_unfinished.constData(), static_cast<std::size_t>(_unfinished.size()));
  std::size_t begin = 0;
  while (view.size() - begin >= frame_prefix_size) {
    const std::uint32_t length = view.big_endian_32(begin);
    if (length > longest_message) {
      _has_lost_track = true;
      break;
    }
    const std::size_t size = frame_bytes_needed(length);
    if (view.size() - begin < size)
      break;
    frames.push_back(_unfinished.mid(static_cast<int>(begin), static_cast<int>(size)));
    begin += size;
  }
  _unfinished.remove(0, static_cast<int>(begin));
  if (_has_lost_track)
    _unfinished.clear();
  return frames;
}

} // namespace buttondriver::buttonctl
