// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/tft.h"

#include "dimensions/panel_dimensions.h"
#include "logging/standard_output.h"
#include "panel/formats/colour.h"
#include "panel/registers/register_access.h"
#include "panel/registers/registers.h"
#include "panel/tft/pixel_window.h"
#include "panel/tft/power_on_sequence.h"

#include <array>
#include <thread>

namespace buttondriver::panel {

std::optional<unsigned> tft_select_mask(int screen_id) {
  if (screen_id == dimensions::all_screens)
    return all_controllers;
  if (screen_id < 0 || screen_id >= dimensions::screen_count)
    return std::nullopt;
  return controller_mask(screen_id);
}

std::optional<unsigned> tft_checked_mask(int screen_id) {
  const std::optional<unsigned> mask = tft_select_mask(screen_id);
  if (!mask)
    tft_print_invalid_screen(screen_id);
  return mask;
}

int tft_print_invalid_screen(int screen_id) { return print("Invalid screen ID %d.\n", screen_id); }

int tft_write_index(unsigned mask, std::uint8_t byte) {
  return fpga_reg_write8(fpga_register::tft_index_base + 2 * mask, byte);
}

int tft_write_data(unsigned mask, std::uint32_t word) {
  return fpga_reg_write16(fpga_register::tft_data_base + 2 * mask, word);
}

int tft_write_pixels(unsigned mask, std::uint16_t *pixels, std::uint32_t count) {
  return fpga_reg_write(fpga_reg_fd, fpga_register::tft_data_base + 2 * mask, pixels, count & 0xFFFF);
}

int tft_select_register(unsigned mask, std::uint8_t index) {
  tft_write_index(mask, 0);
  return tft_write_index(mask, index);
}

int tft_write_register(unsigned mask, std::uint8_t index, std::uint16_t value) {
  tft_select_register(mask, index);
  return tft_write_data(mask, value);
}

void tft_start_pixels(unsigned mask) {
  tft_write_register(mask, tft_register::ram_address, 0);
  tft_select_register(mask, tft_register::write_ram);
}

void tft_reset_window() {
  tft_write_register(all_controllers, tft_register::horizontal_window, all_columns);
  tft_write_register(all_controllers, tft_register::vertical_window, all_rows);
}

void tft_controller_init() {
  for (const PowerOnStep &step : power_on_sequence) {
    if (step.target == PowerOnStep::Target::intensity)
      fpga_reg_write8(fpga_register::tft_intensity, static_cast<std::uint8_t>(step.value));
    else
      tft_write_register(all_controllers, step.index, step.value);
    std::this_thread::sleep_for(step.wait);
  }
}

int tft_set_intensity(unsigned percent) {
  if (percent > 100) {
    print("TFT Intensity is out of range: Must be between 0 and 100 %%.\n");
    return -1;
  }
  const unsigned level = percent * dimensions::highest_intensity_level / 100;
  fpga_reg_write8(fpga_register::tft_intensity, static_cast<std::uint8_t>(intensity_enable | level));
  return 0;
}

int tft_blackout(int screen_id) {
  const std::optional<unsigned> mask = tft_select_mask(screen_id);
  if (!mask)
    return tft_print_invalid_screen(screen_id);
  tft_reset_window();
  tft_start_pixels(*mask);
  std::array<std::uint16_t, dimensions::screen_pixels> pixels{};
  pixels.fill(rgb888_to_rgb565(black));
  return tft_write_pixels(*mask, pixels.data(), dimensions::screen_pixels);
}

} // namespace buttondriver::panel
