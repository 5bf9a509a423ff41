// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

/// The TFT screens' controllers. Screen ids are 0, 1, 2, and -1 for all three; a controller mask has one bit a screen.
namespace buttondriver::panel {

/// The controllers of `screen_id`; nothing for an id that does not exist.
std::optional<unsigned> tft_select_mask(int screen_id);

/// As tft_select_mask, with a line on standard output for an id that does not exist.
std::optional<unsigned> tft_checked_mask(int screen_id);
/// Prints that line. Returns its length in bytes.
int tft_print_invalid_screen(int screen_id);

/// One half of a 16-bit register index.
int tft_write_index(unsigned mask, std::uint8_t byte);
/// A 16-bit register value.
int tft_write_data(unsigned mask, std::uint32_t word);
/// One transfer of `count` pixels, of which only the low 16 bits count.
int tft_write_pixels(unsigned mask, std::uint16_t *pixels, std::uint32_t count);

/// Selects a controller register: both bytes of its index, high byte first.
int tft_select_register(unsigned mask, std::uint8_t index);
/// Selects a controller register and writes its value: three transfers.
int tft_write_register(unsigned mask, std::uint8_t index, std::uint16_t value);

/// The pixels that follow start at the corner of the window.
void tft_start_pixels(unsigned mask);
/// Makes the whole screen the window, on all three controllers.
void tft_reset_window();
/// The controllers' power-on sequence; takes about 110 ms. The daemon finds the controllers running.
void tft_controller_init();

/// Sets the brightness of all screens, 0 to 100 percent. Returns 0; -1, with a line on standard output,
/// when out of range.
int tft_set_intensity(unsigned percent);
/// Clears a screen to black. Returns the transfer's result; for an id that does not exist, the length of the line that
/// it prints on standard output, a positive number.
int tft_blackout(int screen_id);

} // namespace buttondriver::panel
