// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <vector>

class QIODevice;

namespace buttondriver {

/// Where the command server delivers messages.
class ButtonSetter {
public:
  virtual ~ButtonSetter() = default;

  /// Acts on `messages` in order, each one message in network order without its length. `reply` is the connection they
  /// came from. `image_id_offset` keeps the connection's private images apart from those of others.
  /// A fault in one message is logged and never stops the others.
  virtual void process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 image_id_offset) = 0;
};

} // namespace buttondriver
