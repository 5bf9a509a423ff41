// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/view_of.h"

#include <QByteArray>

namespace buttondriver {

/// The bytes of a message from some offset on, without a copy: the message's storage lives as long as this does, on
/// whatever thread.
class SharedBytes {
public:
  SharedBytes(QByteArray message, std::size_t offset) : _message(std::move(message)), _offset(offset) {}

  /// No bytes when the message ends at the offset or before.
  ByteView view() const { return view_of(_message).from(_offset); }

  /// Bytes of the whole message, which all stay alive.
  std::size_t keptBytes() const { return static_cast<std::size_t>(_message.size()); }

private:
  QByteArray _message;
  std::size_t _offset;
};

} // namespace buttondriver
