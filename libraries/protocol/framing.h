// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

/// How messages lie on the TCP stream: a 4-byte big-endian length L, then L bytes of message; L does not count itself.
namespace buttondriver {

/// The TCP port of a daemon that was not given another one.
inline constexpr std::uint16_t DEFAULT_PORT = 3003;

inline constexpr std::uint32_t frame_prefix_size = 4;

/// The length that stands before a message of `message_size` bytes.
constexpr std::array<std::uint8_t, frame_prefix_size> frame_prefix(std::uint32_t message_size) {
  return {static_cast<std::uint8_t>(message_size >> 24), static_cast<std::uint8_t>(message_size >> 16),
          static_cast<std::uint8_t>(message_size >> 8), static_cast<std::uint8_t>(message_size)};
}

/// Bytes that must be there before a frame of length `L` is taken from the stream. The sum wraps in 32 bits: a length
/// of 0xFFFFFFFC and above asks for next to nothing, and the frame is whatever is there at that moment.
constexpr std::uint32_t frame_bytes_needed(std::uint32_t L) { return L + frame_prefix_size; }

} // namespace buttondriver
