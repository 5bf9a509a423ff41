// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/button_setter.h"
#include "simulator/traffic/history.h"
#include "simulator/traffic/message_record.h"
#include "simulator/traffic/text_memory.h"

namespace buttondriver::simulator {

/// Stands between the server and the dispatcher: remembers the messages that pass and what texts they write, and hands
/// them on unchanged. Lives on the event loop's thread.
class MessageObserver : public ButtonSetter {
public:
  static constexpr std::size_t kept_messages = 500;

  /// Where the messages go; it outlives its use here.
  void setNext(ButtonSetter *next) { _next = next; }

  void process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 client_id) override;
  std::chrono::nanoseconds deviceTime(const QByteArray &message) const override { return _next->deviceTime(message); }

  const History<MessageRecord> &messages() const { return _messages; }
  const TextMemory &texts() const { return _texts; }
  /// Messages since the start or since forget().
  std::uint64_t count() const { return _messages.last() - _forgotten; }
  /// Empties the list and the texts, and counts from 0 again.
  void forget();

private:
  ButtonSetter *_next = nullptr;
  History<MessageRecord> _messages{kept_messages};
  std::uint64_t _forgotten = 0;
  TextMemory _texts;
};

} // namespace buttondriver::simulator
