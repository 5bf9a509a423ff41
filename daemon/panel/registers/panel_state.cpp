// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/panel_state.h"

#include "panel/registers/register_access.h"
#include "panel/registers/registers.h"

namespace buttondriver::panel {

namespace {

std::uint32_t read_number(unsigned high_half) {
  const std::uint32_t high = fpga_reg_read(fpga_reg_fd, high_half);
  return high << 16 | fpga_reg_read(fpga_reg_fd, high_half + 1);
}

} // namespace

unsigned fpga_read_state_bits() { return fpga_reg_read(fpga_reg_fd, fpga_register::state) & state_bits::low_bits; }

bool fpga_read_state_flag() { return (fpga_reg_read(fpga_reg_fd, fpga_register::state) & state_bits::flag) != 0; }

std::uint8_t fpga_read_state_byte() {
  return static_cast<std::uint8_t>(fpga_reg_read(fpga_reg_fd, fpga_register::state_byte));
}

std::uint8_t led_read_toggle_indicators() {
  return static_cast<std::uint8_t>(fpga_reg_read(fpga_reg_fd, fpga_register::toggle_indicators));
}

std::uint32_t fpga_read_first_number() { return read_number(fpga_register::first_number); }

std::uint32_t fpga_read_second_number() { return read_number(fpga_register::second_number); }

} // namespace buttondriver::panel
