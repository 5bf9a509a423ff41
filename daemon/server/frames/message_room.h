// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <cstddef>
#include <vector>

namespace buttondriver {

/// Makes `message` a copy of `size` bytes, without an allocation when it was a small one before that nobody shares.
void copy_to(QByteArray &message, const char *bytes, std::size_t size);

/// Memory for the messages of a turn: what small ones of earlier turns lay in. For one thread.
class MessageRoom {
public:
  /// A list with anything in it.
  std::vector<QByteArray> takeList() { return std::move(_list); }
  /// Where the message with this number goes to in such a list, when all before it are there.
  QByteArray &place(std::vector<QByteArray> &messages, std::size_t number) {
    if (number == messages.size())
      addPlace(messages);
    return messages[number];
  }
  /// What is in the list after its first `count` messages goes.
  void cut(std::vector<QByteArray> &messages, std::size_t count);
  /// The messages are done. Those that somebody else shares stay as they are.
  void giveBack(std::vector<QByteArray> messages) { _list = std::move(messages); }

private:
  void addPlace(std::vector<QByteArray> &messages);

  std::vector<QByteArray> _list;
  std::vector<QByteArray> _spare;
};

} // namespace buttondriver
