// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"

#include <QByteArray>

namespace buttondriver {

/// Borrows all bytes of `bytes`, until they change or go.
inline ByteView view_of(const QByteArray &bytes) {
  return ByteView(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}
/// Would borrow from what goes at once.
ByteView view_of(QByteArray &&) = delete;

} // namespace buttondriver
