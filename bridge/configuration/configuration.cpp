// SPDX-License-Identifier: Apache-2.0
#include "bridge/configuration/configuration.h"

namespace buttondriver::bridge {

bool Configuration::drives(const QByteArray &panel) const {
  // FNV-1a with 64 bits.
  quint64 hash = 14695981039346656037U;
  for (const char byte : panel) {
    hash ^= static_cast<unsigned char>(byte);
    hash *= 1099511628211U;
  }
  return hash % static_cast<quint64>(shares) == static_cast<quint64>(share - 1);
}

} // namespace buttondriver::bridge
