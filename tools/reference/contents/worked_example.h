// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/catalogue.h"
#include "protocol/framing.h"
#include "tools/reference/contents/hex_bytes.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace buttondriver::documents {

/// One frame, byte by byte, and what it does. Written by hand: the page shows what the wire carries, not what our own
/// encoders make of it.
struct WorkedExample {
  std::uint32_t opcode;
  std::string_view asks;   ///< what the frame says, in words
  std::string_view frame;  ///< the whole frame, its length included, as HexBytes reads it
  std::string_view effect; ///< what the daemon does
};

namespace worked_example_detail {

/// A text as senders write it: one NUL, at its end.
constexpr bool is_terminated_text(ByteView text) {
  for (std::size_t i = 0; i + 1 < text.size(); ++i)
    if (text.u8(i) == 0)
      return false;
  return !text.empty() && text.u8(text.size() - 1) == 0;
}

} // namespace worked_example_detail

/// Whether the frame's length, opcode, size and counts are those that `type` asks for.
constexpr bool is_consistent(const WorkedExample &example, const MessageType &type) {
  const HexBytes bytes(example.frame);
  if (!bytes.makesSense() || example.opcode != type.opcode)
    return false;
  const ByteView frame = bytes.view();
  const ByteView message = frame.from(frame_prefix_size);
  if (frame.bigEndian32(0) != message.size() || message.bigEndian32(0) != type.opcode)
    return false;
  const bool counts = type.counted != Counted::nothing;
  const std::uint32_t count = counts ? message.bigEndian32(type.countField().offset) : 0;
  if (message.size() != type.size(count))
    return false;
  return type.counted != Counted::text_bytes || worked_example_detail::is_terminated_text(message.from(type.head_size));
}

} // namespace buttondriver::documents
