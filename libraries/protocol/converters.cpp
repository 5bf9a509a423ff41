// SPDX-License-Identifier: Apache-2.0
#include "protocol/converters.h"

#include <arpa/inet.h>

#include <cstring>

namespace buttondriver {

namespace {

std::uint32_t load_32(const std::uint8_t *place) {
  std::uint32_t value = 0;
  std::memcpy(&value, place, sizeof value);
  return value;
}

void swap_32(std::uint8_t *destination, const std::uint8_t *source) {
  // htonl and ntohl are the same swap.
  const std::uint32_t swapped = htonl(load_32(source));
  std::memcpy(destination, &swapped, sizeof swapped);
}

void convert_variable_part(const MessageType &type, std::uint8_t *destination, const std::uint8_t *source,
                           std::uint32_t count) {
  if (type.counted == Counted::image_ids) {
    for (std::uint32_t i = 0; i < count; ++i)
      swap_32(destination + std::size_t{4} * i, source + std::size_t{4} * i);
  } else if (destination != source && count > 0) {
    std::memcpy(destination, source, count);
  }
}

} // namespace

void hton_BMS_SetButtonColourPair(BMS_SetButtonColourPair *destination, const BMS_SetButtonColourPair *source) {
  host_to_network<BMS_SetButtonColourPair>(destination, source);
  destination->not_transmitted = htons(source->not_transmitted);
}

void ntoh_BMS_SetButtonColourPair(BMS_SetButtonColourPair *destination, const BMS_SetButtonColourPair *source) {
  network_to_host<BMS_SetButtonColourPair>(destination, source);
  destination->not_transmitted = ntohs(source->not_transmitted);
}

void swap_head(const MessageType &type, void *destination, const void *source) {
  auto *to = static_cast<std::uint8_t *>(destination);
  const auto *from = static_cast<const std::uint8_t *>(source);
  for (std::size_t i = 0; i < type.fieldCount(); ++i) {
    const Field &field = type.fields[i];
    if (field.kind != FieldKind::bytes && field.width == 4)
      swap_32(to + field.offset, from + field.offset);
    else if (to != from)
      std::memcpy(to + field.offset, from + field.offset, field.width);
  }
}

void host_to_network(const MessageType &type, void *destination, const void *source) {
  auto *to = static_cast<std::uint8_t *>(destination);
  const auto *from = static_cast<const std::uint8_t *>(source);
  // The count is read before an in-place conversion turns it into network order.
  const std::uint32_t count = type.counted == Counted::nothing ? 0 : load_32(from + type.countField().offset);
  swap_head(type, to, from);
  convert_variable_part(type, to + type.head_size, from + type.head_size, count);
}

void network_to_host(const MessageType &type, void *destination, const void *source) {
  auto *to = static_cast<std::uint8_t *>(destination);
  const auto *from = static_cast<const std::uint8_t *>(source);
  swap_head(type, to, from);
  const std::uint32_t count = type.counted == Counted::nothing ? 0 : load_32(to + type.countField().offset);
  convert_variable_part(type, to + type.head_size, from + type.head_size, count);
}

} // namespace buttondriver
