// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dimensions/panel_dimensions.h"

/// The register map of the panel, as its data sheet would have it.
namespace buttondriver::panel {

/// 16-bit registers of the FPGA. "High byte": an 8-bit value, in bits 8 to 15.
namespace fpga_register {
inline constexpr unsigned tft_intensity = 0x800;      ///< high byte: intensity_enable | level
inline constexpr unsigned led_command = 0x900;        ///< high byte: LED command, see led_command_bits
inline constexpr unsigned tft_index_base = 0xA00;     ///< + 2 x controller mask; high byte: half of an index
inline constexpr unsigned tft_data_base = 0xA01;      ///< + 2 x controller mask; register values and pixels
inline constexpr unsigned state = 0x1000;             ///< read: two bits from bit 0 on, and bit 8, see state_bits
inline constexpr unsigned state_byte = 0x1002;        ///< read: low byte
inline constexpr unsigned toggle_indicators = 0x1003; ///< bit 0 and bit 1, one for each indicator; read: low byte
inline constexpr unsigned first_number = 0x1004;      ///< read: 32 bits, the high half here, the low one in 0x1005
inline constexpr unsigned second_number = 0x1006;     ///< read: 32 bits, the high half here, the low one in 0x1007
} // namespace fpga_register

/// What there is in the state register.
namespace state_bits {
inline constexpr unsigned low_bits = 0x3;
inline constexpr unsigned flag = 0x100;
} // namespace state_bits

/// The LED command byte: bits 0-4 LED id, bit 5 on, bits 6-7 kind.
namespace led_command_bits {
inline constexpr unsigned on = 0x20;
inline constexpr unsigned button_led = 0x40;
inline constexpr unsigned status_indicator = 0x80;
} // namespace led_command_bits

/// Button LED commands are kept this far apart.
inline constexpr unsigned led_pause_microseconds = 50;

/// The intensity byte: two enable bits, then a level of 0 to dimensions::highest_intensity_level.
inline constexpr unsigned intensity_enable = 0xC0;
inline constexpr unsigned full_intensity = intensity_enable | dimensions::highest_intensity_level;

/// The mask of the controller of one screen, 0 to dimensions::screen_count - 1. A write with several bits set reaches
/// all these controllers in one transfer.
constexpr unsigned controller_mask(int screen_id) { return 1U << screen_id; }
inline constexpr unsigned all_controllers = controller_mask(dimensions::screen_count) - 1;

/// 16-bit registers of a TFT controller. An index goes out as two bytes on the index port, high byte first. The others
/// appear in the power-on sequence only, by their numbers.
namespace tft_register {
inline constexpr unsigned ram_address = 0x21;       ///< 0: the corner of the window
inline constexpr unsigned write_ram = 0x22;         ///< the pixels follow on the data port
inline constexpr unsigned horizontal_window = 0x44; ///< end column in the high byte, start column in the low byte
inline constexpr unsigned vertical_window = 0x45;   ///< end row in the high byte, start row in the low byte
} // namespace tft_register

/// Where the pixels of the screen lie in a controller's memory, both ends included.
inline constexpr int first_column = 4;
inline constexpr int last_column = first_column + dimensions::screen_width - 1;
inline constexpr int first_row = 1;
inline constexpr int last_row = first_row + dimensions::screen_height - 1;

/// Device node of the FPGA's registers.
inline constexpr const char *register_device_path = "/dev/fpga-reg";

} // namespace buttondriver::panel
