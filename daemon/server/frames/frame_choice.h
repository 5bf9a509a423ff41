// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"
#include "protocol/records.h"

#include <QtGlobal>

namespace buttondriver {

/// Which frames to take.
enum class FrameChoice : quint8 {
  all,
  no_null_messages, ///< up to the first null message
  leading_pings,    ///< only those that ask for nothing but an answer, up to the first of another kind
  none,
};

/// Whether `message` asks for its bytes to be logged, a line for each. Its opcode is enough.
inline bool asks_for_lines(ByteView message) {
  return !message.empty() && message.bigEndian32(0) == TYPE_NULL_MESSAGE::code;
}

} // namespace buttondriver
