// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"

#include <QByteArray>
#include <QJsonObject>
#include <QtGlobal>

namespace buttondriver::simulator {

/// One message that a client has sent, for the list that people read.
struct MessageRecord {
  /// So much of a message is kept: every head, and as much of a text as a screen can show.
  static constexpr int most_bytes = 512;

  qint64 time_ms;   ///< since 1970, UTC
  qint32 client;    ///< 1000, 2000, ... in order of connection
  qint64 size;      ///< bytes of the whole message
  QByteArray bytes; ///< the first most_bytes of it, in network order
};

/// The message with its name and its fields, as {"time", "client", "size", "name", "fields": [[name, value], ...]}.
/// Numbers come as numbers, colours as text "0xRRGGBB". Where the message counts characters, "text" has them up to the
/// NUL; where it counts other bytes or ids, "rest" is how many bytes follow the head. A message that is shorter than
/// its head reads as if zeros followed. An opcode that does not exist has the name "".
QJsonObject to_json(const MessageRecord &record);

} // namespace buttondriver::simulator
