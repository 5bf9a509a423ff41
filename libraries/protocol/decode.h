// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "../bytes/byte_view.h"
#include "records.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace buttondriver {

/// One field of a head, in host order. Which one is known when it is compiled: a loop over the fields would cost more
/// than the fields.
template <class Record, std::size_t Index> void decode_field(ByteView message, Record &record) {
  constexpr Field field = type_of<Record>.fields[Index];
  std::uint8_t *const place = reinterpret_cast<std::uint8_t *>(&record) + field.offset;
  if constexpr (field.kind != FieldKind::bytes && field.width == 4) {
    const std::uint32_t number = message.bigEndian32(field.offset);
    std::memcpy(place, &number, sizeof number);
  } else {
    message.from(field.offset).copyTo(place, field.width);
  }
}

/// All fields of the head, by their places in the row.
template <class Record, std::size_t... Indices>
Record decode_fields(ByteView message, std::index_sequence<Indices...>) {
  Record record{};
  (decode_field<Record, Indices>(message, record), ...);
  return record;
}

/// The head of a received message, which stands without the length that frames it, in host order. A message shorter
/// than its layout reads as if zero bytes followed; the message itself is not changed. Whether it is a `Record`, its
/// opcode says, which is not looked at here. The variable part is left to `message.from(type_of<Record>.head_size)`;
/// its count may claim more bytes than are there.
template <class Record> Record decode(ByteView message) {
  return decode_fields<Record>(message, std::make_index_sequence<type_of<Record>.fieldCount()>());
}

} // namespace buttondriver
