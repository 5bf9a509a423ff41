// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// What the panel reports about itself, read on fpga_reg_fd. The daemon asks for none of it; it is there for service
/// programs. What the bits and numbers mean is the panel's own affair. A transfer that fails reads as zeros.
namespace buttondriver::panel {

/// The low two bits of the state register, 0 to 3.
unsigned fpga_read_state_bits();
/// Bit 8 of the state register.
bool fpga_read_state_flag();
/// The state byte.
std::uint8_t fpga_read_state_byte();

/// The toggle indicators as the hardware has them, bit 0 and bit 1, in the register's low byte.
std::uint8_t led_read_toggle_indicators();

/// The two 32-bit numbers, each read from two registers, high half first. The panel may change a number in between.
std::uint32_t fpga_read_first_number();
std::uint32_t fpga_read_second_number();

} // namespace buttondriver::panel
