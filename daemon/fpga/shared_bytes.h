// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/view_of.h"

#include <QByteArray>

#include <algorithm>
#include <utility>

namespace buttondriver {

/// The bytes of a message from some offset on, without a copy: the message's storage lives as long as this does, on
/// whatever thread.
class SharedBytes {
public:
  SharedBytes(QByteArray message, std::size_t offset) : _message(std::move(message)), _offset(offset) {}

  /// A copy of `bytes`, of the first 256 MiB if there are more.
  static SharedBytes copyOf(ByteView bytes) {
    constexpr std::size_t most = std::size_t{1} << 28;
    using Size = decltype(QByteArray().size());
    const auto size = static_cast<Size>(std::min(bytes.size(), most));
    return {QByteArray(reinterpret_cast<const char *>(bytes.data()), size), 0};
  }

  /// No bytes when the message ends at the offset or before.
  ByteView view() const { return view_of(_message).from(_offset); }

  /// Bytes of the whole message, which all stay alive.
  std::size_t keptBytes() const { return static_cast<std::size_t>(_message.size()); }

private:
  QByteArray _message;
  std::size_t _offset;
};

} // namespace buttondriver
