// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/converters.h"
#include "protocol/framing.h"

#include <QByteArray>

#include <cstdint>
#include <cstring>

namespace buttondriver::bridge {

/// The frame of a message with `head`, which is in host order, in one piece of memory: the length, the head, and room
/// for `counted` bytes, which are not written yet. The whole is far below 2 GiB.
template <class Record> QByteArray message_frame(const Record &head, std::uint32_t counted = 0) {
  constexpr std::uint32_t head_size = type_of<Record>.head_size;
  const auto prefix = frame_prefix(head_size + counted);
  QByteArray frame(static_cast<int>(frame_prefix_size + head_size + counted), Qt::Uninitialized);
  char *const bytes = frame.data();
  std::memcpy(bytes, prefix.data(), prefix.size());
  swap_head(type_of<Record>, bytes + frame_prefix_size, &head);
  return frame;
}

/// Where the counted bytes of a frame go.
template <class Record> char *counted_place(QByteArray &frame) {
  return frame.data() + frame_prefix_size + type_of<Record>.head_size;
}

} // namespace buttondriver::bridge
