// SPDX-License-Identifier: Apache-2.0
#include "panel/leds.h"

#include "dimensions/panel_dimensions.h"
#include "panel/registers/register_access.h"
#include "panel/registers/registers.h"

#include <unistd.h>

namespace buttondriver::panel {

unsigned toggle_indicator_bits = 0;

namespace {

int write_led_command(int led_id, unsigned kind, unsigned state) {
  const unsigned command = static_cast<unsigned>(led_id) + kind + (state == 1 ? led_command_bits::on : 0);
  return fpga_reg_write8(fpga_register::led_command, static_cast<std::uint8_t>(command));
}

} // namespace

int led_set_button_state(int led_id, unsigned state) {
  write_led_command(led_id, led_command_bits::button_led, state);
  return ::usleep(led_pause_microseconds);
}

int led_set_status_indicator(int led_id, unsigned state) {
  return write_led_command(led_id, led_command_bits::status_indicator, state);
}

int led_set_toggle_indicator(unsigned indicator, unsigned state) {
  if (indicator >= dimensions::toggle_indicator_count)
    return 1;
  if (state > 1)
    return 2;
  const unsigned bit = 1U << indicator;
  toggle_indicator_bits = state == 1 ? toggle_indicator_bits | bit : toggle_indicator_bits & ~bit;
  fpga_reg_write16(fpga_register::toggle_indicators, toggle_indicator_bits);
  return 0;
}

} // namespace buttondriver::panel
