// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/framing.h"

#include <QByteArray>

#include <cstddef>
#include <limits>
#include <vector>

class QIODevice;

namespace buttondriver {

/// Looks at the beginning of `stream` and takes nothing.
FrameHead peek_frame(QIODevice &stream);

/// Which frames to take.
enum class FrameChoice : quint8 {
  all,
  leading_pings, ///< only those that ask for nothing but an answer, up to the first of another kind
  none,
};

/// Takes complete frames from `stream`, at most `limit`, and returns their messages, in order, without the lengths.
/// What is left stays unread. A frame may be empty. A null message with any bytes is the last one taken: what comes
/// after it may have to wait.
std::vector<QByteArray> take_frames(QIODevice &stream, std::size_t limit = std::numeric_limits<std::size_t>::max(),
                                    FrameChoice choice = FrameChoice::all);

} // namespace buttondriver
