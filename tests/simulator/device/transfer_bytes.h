// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/transfer_record.h"
#include "support/hex.h"

#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace buttondriver::test {

/// The transfer record with these 16 bytes.
inline panel::TransferRecord record_of(std::string_view digits) {
  const std::string bytes = from_hex(digits);
  panel::TransferRecord record;
  if (bytes.size() != sizeof record)
    throw std::invalid_argument("a record has 16 bytes");
  std::memcpy(&record, bytes.data(), sizeof record);
  return record;
}

inline std::string bytes_of(const panel::TransferRecord &record) {
  std::string bytes(sizeof record, '\0');
  std::memcpy(bytes.data(), &record, sizeof record);
  return to_hex(bytes);
}

} // namespace buttondriver::test
