// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/transfer_record.h"

#include <cstdint>
#include <variant>

namespace buttondriver::simulator {

/// What a transfer record says, once its form and its fixed bits have been checked.
struct Transfer {
  std::uint32_t address;
  bool is_read;
  std::uint16_t *words; ///< `count` words: read from for a write, filled in for a read
  std::uint32_t count;
};

/// Why no device would accept a record.
struct RefusedTransfer {
  const char *reason;
};

/// Reads the very record that a device would get. `words` are the `record.count` words that go with it, null when there
/// are none; a single one lies in the record itself and is taken out, and put back, by the caller. The result borrows
/// `words`.
std::variant<Transfer, RefusedTransfer> read_record(unsigned long request, const panel::TransferRecord &record,
                                                    std::uint16_t *words);

} // namespace buttondriver::simulator
