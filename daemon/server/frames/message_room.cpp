// SPDX-License-Identifier: Apache-2.0
#include "server/frames/message_room.h"

#include "buttons/button_setter.h"
#include "server/limits.h"

#include <cstring>
#include <utility>

namespace buttondriver {

namespace {

using Size = decltype(QByteArray().size());

/// Small messages lie in memory of this size, so that any other one fits.
constexpr std::size_t small = ButtonSetter::most_reused;

bool is_small(const QByteArray &message) { return message.capacity() == static_cast<Size>(small); }

} // namespace

void copy_to(QByteArray &message, const char *bytes, std::size_t size) {
  if (size > small) {
    message = QByteArray(bytes, static_cast<Size>(size));
    return;
  }
  if (!is_small(message)) {
    message = QByteArray();
    message.reserve(static_cast<Size>(small));
  }
  if (message.size() != static_cast<Size>(size))
    message.resize(static_cast<Size>(size));
  // In other memory, if somebody shares it.
  std::memcpy(message.data(), bytes, size);
}

void MessageRoom::addPlace(std::vector<QByteArray> &messages) {
  if (_spare.empty()) {
    messages.emplace_back();
  } else {
    messages.push_back(std::move(_spare.back()));
    _spare.pop_back();
  }
}

void MessageRoom::cut(std::vector<QByteArray> &messages, std::size_t count) {
  for (; messages.size() > count; messages.pop_back())
    if (is_small(messages.back()) && _spare.size() < limits::messages_per_turn)
      _spare.push_back(std::move(messages.back()));
}

} // namespace buttondriver
