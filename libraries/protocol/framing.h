// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "../bytes/byte_view.h"

#include <array>
#include <cstdint>

/// How messages lie on the TCP stream: a 4-byte big-endian length L, then L bytes of message; L does not count itself.
namespace buttondriver {

/// The TCP port of a daemon that was not given another one.
inline constexpr std::uint16_t DEFAULT_PORT = 3003;

/// Bytes of the length that stands before a message.
inline constexpr std::uint32_t frame_prefix_size = 4;

/// The length that stands before a message of `message_size` bytes.
constexpr std::array<std::uint8_t, frame_prefix_size> frame_prefix(std::uint32_t message_size) {
  return {static_cast<std::uint8_t>(message_size >> 24), static_cast<std::uint8_t>(message_size >> 16),
          static_cast<std::uint8_t>(message_size >> 8), static_cast<std::uint8_t>(message_size)};
}

/// Bytes that must be there before a frame of `length` is taken from the stream. The sum wraps in 32 bits: a length
/// of 0xFFFFFFFC and above asks for next to nothing, and the frame is whatever is there at that moment.
constexpr std::uint32_t frame_bytes_needed(std::uint32_t length) { return length + frame_prefix_size; }

/// The frame that a stream begins with, as far as its length tells.
struct FrameHead {
  bool is_known = false;          ///< the length itself is there
  std::uint32_t length = 0;       ///< of the message; more than is there when it wraps
  std::uint32_t bytes_needed = 0; ///< until the frame can be taken, its length included; wraps in 32 bits
  bool is_complete = false;       ///< that many are there
};

/// Looks at a stream of which `available` bytes are there. `beginning` holds the first of them; what lies after the
/// length is not looked at.
constexpr FrameHead frame_head(ByteView beginning, std::uint64_t available) {
  if (beginning.size() < frame_prefix_size)
    return {};
  const std::uint32_t length = beginning.bigEndian32(0);
  const std::uint32_t needed = frame_bytes_needed(length);
  return {true, length, needed, available >= needed};
}

} // namespace buttondriver
