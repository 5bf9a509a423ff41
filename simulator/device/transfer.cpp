// SPDX-License-Identifier: Apache-2.0
#include "simulator/device/transfer.h"

namespace buttondriver::simulator {

namespace {

namespace short_form = panel::short_form;
namespace long_form = panel::long_form;

} // namespace

std::variant<Transfer, RefusedTransfer> read_record(unsigned long request, const panel::TransferRecord &record,
                                                    std::uint16_t *words) {
  if (record.reserved != 0)
    return RefusedTransfer{"the reserved word is not 0"};
  if (record.count > 0 && !words)
    return RefusedTransfer{"there is no buffer for the words"};

  if (request == panel::short_form_request) {
    const unsigned word = record.address_low;
    if ((word & short_form::always_one) == 0 || (word & short_form::always_zero) != 0)
      return RefusedTransfer{"a fixed bit of the short address word is wrong"};
    return Transfer{word & short_form::address_mask, (word & short_form::read) != 0, words, record.count};
  }
  if (request == panel::long_form_request) {
    const std::uint32_t word = std::uint32_t{record.address_high} << 16 | record.address_low;
    if ((word & long_form::always_one) == 0 || (word & long_form::always_zero) != 0)
      return RefusedTransfer{"a fixed bit of the long address word is wrong"};
    return Transfer{word & long_form::address_mask, (word & long_form::read) != 0, words, record.count};
  }
  return RefusedTransfer{"the request is unknown"};
}

} // namespace buttondriver::simulator
