// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <chrono>
#include <cstddef>
#include <vector>

class QIODevice;

namespace buttondriver {

/// Where the command server delivers messages.
class ButtonSetter {
public:
  virtual ~ButtonSetter() = default;

  /// Bytes of a message whose memory may be used again as soon as process_messages has returned and nobody shares it.
  /// Another thread gets a copy of so small a message; a larger one it may share.
  static constexpr std::size_t most_reused = 256;

  /// Acts on `messages` in order, each one message in network order without its length. `reply` is the connection they
  /// came from. `client_id` is that connection's id: added to the ids of its private images, it keeps them apart
  /// from those of others.
  /// A fault in one message is logged and never stops the others.
  virtual void process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 client_id) = 0;

  /// How long the panel's device is expected to be busy with what `message` asks for. Nothing is done. 0 for a message
  /// that does not concern the device.
  virtual std::chrono::nanoseconds deviceTime(const QByteArray & /*message*/) const { return {}; }
};

} // namespace buttondriver
