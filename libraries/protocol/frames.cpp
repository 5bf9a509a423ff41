// SPDX-License-Identifier: Apache-2.0
#include "protocol/frames.h"

#include "bytes/view_of.h"
#include "protocol/framing.h"

#include <algorithm>

namespace buttondriver {

QByteArray framed(const QByteArray &message) {
  const auto prefix = frame_prefix(static_cast<std::uint32_t>(message.size()));
  return QByteArray(reinterpret_cast<const char *>(prefix.data()), static_cast<int>(prefix.size())) + message;
}

std::vector<QByteArray> FrameCutter::take(const QByteArray &bytes) {
  std::vector<QByteArray> messages;
  if (_has_lost_track)
    return messages;
  _unfinished += bytes;
  const ByteView all = view_of(_unfinished);
  std::size_t begin = 0;
  for (;;) {
    const ByteView rest = all.from(begin);
    const FrameHead head = frame_head(rest, rest.size());
    _has_lost_track = head.is_known && head.length > _longest_message;
    if (_has_lost_track || !head.is_complete)
      break;
    // Never more than is there: the length may have wrapped.
    const std::size_t size = std::min<std::size_t>(head.length, rest.size() - frame_prefix_size);
    messages.push_back(_unfinished.mid(static_cast<int>(begin + frame_prefix_size), static_cast<int>(size)));
    begin += frame_prefix_size + size;
  }
  _unfinished.remove(0, static_cast<int>(begin));
  if (_has_lost_track)
    _unfinished.clear();
  return messages;
}

} // namespace buttondriver
