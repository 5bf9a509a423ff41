// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Button LEDs, status indicators and toggle indicators. LED ids are not checked: the bits above the lowest five
/// are added to those for the kind and for on, and the hardware gets the sum.
namespace buttondriver::panel {

/// `state` 1 is on, all else off. Waits 50 microseconds, so that commands reach the LEDs spaced. Result of the wait.
int led_set_button_state(int led_id, unsigned state);
/// `state` 1 is on, all else off. Result of the transfer.
int led_set_status_indicator(int led_id, unsigned state);
/// Sets one of the two toggle indicators and writes both. Returns 0; 1 for an indicator above 1; 2 for a state above 1.
/// With 1 and 2 nothing is written.
int led_set_toggle_indicator(unsigned indicator, unsigned state);

/// What the toggle indicators were last set to, bit 0 and bit 1; the hardware is never read back.
extern unsigned toggle_indicator_bits;

} // namespace buttondriver::panel
