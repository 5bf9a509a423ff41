// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/view_of.h"
#include "protocol/framing.h"
#include "server/frames/frame_choice.h"
#include "server/frames/frame_window.h"
#include "server/frames/message_room.h"

#include <QByteArray>

#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

class QIODevice;

namespace buttondriver {

/// Looks at the beginning of `stream` and takes nothing.
FrameHead peek_frame(QIODevice &stream);

/// Takes complete frames, at most `limit`, and returns their messages, in order, without the lengths, in a list of
/// `room`. What is left stays unread. A frame may be empty. A null message with any bytes is the last one taken: what
/// comes after it may have to wait. So is the first one of which `is_last` says so; it is called with each message
/// once, when that was taken.
template <class IsLast>
std::vector<QByteArray> take_frames(FrameWindow &window, MessageRoom &room, std::size_t limit, FrameChoice choice,
                                    IsLast is_last) {
  std::vector<QByteArray> messages = room.takeList();
  std::size_t count = 0;
  while (count < limit && window.isToBeTaken(choice)) {
    QByteArray &message = room.place(messages, count++);
    window.take(message);
    // Asked about each one: who asks may count them.
    const bool is_told_last = is_last(std::as_const(message));
    if (is_told_last || asks_for_lines(view_of(message)))
      break;
  }
  room.cut(messages, count);
  return messages;
}

/// The same from a stream.
std::vector<QByteArray> take_frames(QIODevice &stream, std::size_t limit = std::numeric_limits<std::size_t>::max(),
                                    FrameChoice choice = FrameChoice::all);

} // namespace buttondriver
