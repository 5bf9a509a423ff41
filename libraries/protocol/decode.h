// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "../bytes/byte_view.h"
#include "converters.h"

namespace buttondriver {

/// The head of a received message, which stands without the length that frames it, in host order. A message shorter
/// than its layout reads as if zero bytes followed; the message itself is not changed. Whether it is a `Record`, its
/// opcode says, which is not looked at here. The variable part is left to `message.from(type_of<Record>.head_size)`;
/// its count may claim more bytes than are there.
template <class Record> Record decode(ByteView message) {
  Record record{};
  message.copyTo(&record, type_of<Record>.head_size);
  swap_head(type_of<Record>, &record, &record);
  return record;
}

} // namespace buttondriver
