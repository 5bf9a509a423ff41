// SPDX-License-Identifier: Apache-2.0
#include "server/frames/message_room.h"

#include "buttons/button_setter.h"
#include "server/limits.h"

#include <cstring>
#include <utility>

namespace buttondriver {

namespace {

using Size = decltype(QByteArray().size());

constexpr std::size_t small = ButtonSetter::most_reused;

QByteArray new_room() {
  QByteArray room;
  room.reserve(static_cast<Size>(small));
  return room;
}

} // namespace

QByteArray MessageRoom::copyOf(const char *bytes, std::size_t size) {
  if (size > small)
    return {bytes, static_cast<Size>(size)};
  QByteArray message = _spare.empty() ? new_room() : std::move(_spare.back());
  if (!_spare.empty())
    _spare.pop_back();
  // Moves to other memory when somebody shares it.
  message.resize(static_cast<Size>(size));
  std::memcpy(message.data(), bytes, size);
  return message;
}

void MessageRoom::giveBack(std::vector<QByteArray> messages) {
  for (QByteArray &message : messages)
    if (message.capacity() == static_cast<Size>(small) && _spare.size() < limits::messages_per_turn)
      _spare.push_back(std::move(message));
  messages.clear();
  _list = std::move(messages);
}

} // namespace buttondriver
