// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "converters.h"

#include <QByteArray>

#include <cstring>
#include <limits>

namespace buttondriver {

/// Room for a message of `size` bytes; none when a QByteArray cannot hold it everywhere.
inline QByteArray message_room(std::uint64_t size) {
  using Size = decltype(QByteArray().size());
  constexpr std::uint64_t largest = std::numeric_limits<int>::max() - 1024;
  return size <= largest ? QByteArray(static_cast<Size>(size), Qt::Uninitialized) : QByteArray();
}

/// `head`, which is in host order, as a message in network order, and `count` counted things that are bytes after it,
/// copied from `data`. Empty when there is no room for it. Any thread may call.
template <class Record> QByteArray encoded(const Record &head, const void *data = nullptr, std::uint64_t count = 0) {
  constexpr std::uint32_t head_size = type_of<Record>.head_size;
  QByteArray message = message_room(head_size + count);
  if (message.isEmpty())
    return message;
  char *const bytes = message.data();
  swap_head(type_of<Record>, bytes, &head);
  if (count > 0)
    std::memcpy(bytes + head_size, data, static_cast<std::size_t>(count));
  return message;
}

} // namespace buttondriver
