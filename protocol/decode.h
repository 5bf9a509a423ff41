#pragma once

#include "bytes/byte_view.h"
#include "protocol/converters.h"

namespace buttondriver {

/// The head of a received message in host order. A message shorter than its layout reads as if zero bytes followed;
/// the message itself is not changed.
template <class Record> Record decode(ByteView message) {
  Record record{};
  message.copy_to(&record, type_of<Record>.head_size);
  swap_head(type_of<Record>, &record, &record);
  return record;
}

} // namespace buttondriver
