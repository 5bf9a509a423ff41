#pragma once

#include "panel/transfer_record.h"

#include <cstdint>
#include <variant>

namespace buttondriver::simulator {

/// What a transfer record says, once its form and its fixed bits have been checked.
struct Transfer {
  std::uint32_t address;
  bool is_read;
  std::uint16_t *words; ///< `count` words of the caller: read from for a write, filled in for a read
  std::uint32_t count;
};

/// Why no device would accept a record.
struct RefusedTransfer {
  const char *reason;
};

/// Reads the very record that a device would get. A single word lies in the record itself; `words` are the caller's
/// when there are more, null when it has none. The result borrows from `record` and `words`.
std::variant<Transfer, RefusedTransfer> read_record(unsigned long request, panel::TransferRecord &record,
                                                    std::uint16_t *words);

} // namespace buttondriver::simulator
