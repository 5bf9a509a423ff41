// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

/// The register through which the two-line character displays get their characters.
namespace buttondriver::character_display {

/// Characters of a line.
inline constexpr int columns = 20;
/// Lines of a display.
inline constexpr int lines = 2;

/// The character that takes the display back to the start of its first line.
inline constexpr char home = 11;

/// The data register, in bytes from the base of the register block; 32 bits.
inline constexpr std::size_t data_register_offset = 0x8054;

/// One display's share of the data register: eight data bits, and a strobe that is high at rest. The display takes the
/// character while the strobe is pulsed low.
struct Lane {
  unsigned data_shift;  ///< bits below the data
  std::uint32_t strobe; ///< the one bit of the strobe
};

/// The display of channel 0.
inline constexpr Lane channel_0{0, 0x0000'0100};
/// The display of all other channels.
inline constexpr Lane other_channel{16, 0x0100'0000};

/// Both displays at rest.
inline constexpr std::uint32_t strobes_at_rest = channel_0.strobe | other_channel.strobe;

} // namespace buttondriver::character_display
