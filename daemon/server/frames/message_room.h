// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

#include <cstddef>
#include <vector>

namespace buttondriver {

/// Memory for the messages of a turn. What small ones lay in is used again for later ones, so that they cost no
/// allocation. For one thread.
class MessageRoom {
public:
  /// A list without messages, which has room for some if one was given back.
  std::vector<QByteArray> takeList() { return std::move(_list); }
  /// `size` bytes, to be put into such a list.
  QByteArray copyOf(const char *bytes, std::size_t size);
  /// The messages are done. Those that somebody else shares stay whole, and are left to them.
  void giveBack(std::vector<QByteArray> messages);

private:
  std::vector<QByteArray> _list;
  std::vector<QByteArray> _spare; // of one size
};

} // namespace buttondriver
