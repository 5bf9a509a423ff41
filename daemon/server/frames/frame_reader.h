// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/framing.h"

#include <QByteArray>

#include <cstddef>
#include <functional>
#include <limits>
#include <vector>

class QIODevice;

namespace buttondriver {

/// Looks at the beginning of `stream` and takes nothing.
FrameHead peek_frame(QIODevice &stream);

/// Which frames to take.
enum class FrameChoice : quint8 {
  all,
  no_null_messages, ///< up to the first null message
  leading_pings,    ///< only those that ask for nothing but an answer, up to the first of another kind
  none,
};

/// Tells of a message that was just taken whether it is to be the last one. Asked once about each message.
using IsLast = std::function<bool(const QByteArray &message)>;

/// Takes complete frames from `stream`, at most `limit`, and returns their messages, in order, without the lengths.
/// What is left stays unread. A frame may be empty. A null message with any bytes is the last one taken: what comes
/// after it may have to wait. So is the first one of which `is_last`, if there is one, says so.
std::vector<QByteArray> take_frames(QIODevice &stream, std::size_t limit = std::numeric_limits<std::size_t>::max(),
                                    FrameChoice choice = FrameChoice::all, const IsLast &is_last = {});

} // namespace buttondriver
