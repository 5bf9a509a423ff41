// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <QtGlobal>

namespace buttondriver::bridge {

/// What was published and is not yet written or, with quality of service 1, not yet acknowledged. Bounds it: a broker
/// that does not read must not fill the memory.
class WaitingMessages {
public:
  static constexpr int most_messages = 50'000; ///< a number of a message has 16 bits
  static constexpr qint64 most_bytes = 32 * 1024 * 1024;
  /// For messages of quality of service 0, which say nothing that will not be said again.
  static constexpr int most_messages_0 = 1'000;
  static constexpr qint64 most_bytes_0 = 1024 * 1024;

  bool hasRoomFor(qint64 bytes, int quality_of_service) const {
    return quality_of_service == 0 ? _messages.size() < most_messages_0 && _bytes + bytes <= most_bytes_0
                                   : _messages.size() < most_messages && _bytes + bytes <= most_bytes;
  }
  /// `bytes`: of all of it, the topic among them.
  void add(int number, const QByteArray &topic, qint64 bytes) {
    _messages.insert(number, {topic, bytes});
    _bytes += bytes;
  }
  /// Empty if `number` does not wait.
  QByteArray topicOf(int number) const { return _messages.value(number).topic; }
  /// False if `number` does not wait.
  bool remove(int number) {
    const auto message = _messages.constFind(number);
    if (message == _messages.constEnd())
      return false;
    _bytes -= message->bytes;
    _messages.erase(message);
    return true;
  }
  int count() const { return static_cast<int>(_messages.size()); }
  qint64 bytes() const { return _bytes; }

private:
  struct Message {
    QByteArray topic;
    qint64 bytes = 0;
  };
  QHash<int, Message> _messages;
  qint64 _bytes = 0;
};

} // namespace buttondriver::bridge
