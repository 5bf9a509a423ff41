// SPDX-License-Identifier: Apache-2.0
#include "panel/tft/tft.h"

#include "logging/standard_output.h"
#include "panel/formats/colour.h"
#include "panel/registers/register_access.h"
#include "panel/registers/registers.h"
#include "panel/tft/pixel_window.h"

#include <array>
#include <ctime>

namespace buttondriver::panel {

namespace {

/// One step of the power-on sequence: a controller register, or the FPGA's intensity byte, then a wait.
struct PowerOnStep {
  enum class Target : std::uint8_t { intensity, controller } target;
  std::uint8_t index;
  std::uint16_t value;
  unsigned wait_ms;
};

constexpr PowerOnStep intensity(std::uint8_t value) { return {PowerOnStep::Target::intensity, 0, value, 0}; }
constexpr PowerOnStep controller(std::uint8_t index, std::uint16_t value, unsigned wait_ms = 0) {
  return {PowerOnStep::Target::controller, index, value, wait_ms};
}

constexpr PowerOnStep power_on_sequence[] = {
    intensity(0x00),
    intensity(0x80),
    controller(0x00, 0x0013),
    controller(0x11, 0x7447),
    controller(0x12, 0x0012),
    controller(0x11, 0x4477),
    controller(0x10, 0x2020, 3),
    controller(0x04, 0x0002),
    controller(0x10, 0x2120, 3),
    controller(0x11, 0x3307),
    controller(0x04, 0x0000, 3),
    controller(0x0B, 0x5101),
    controller(0x08, 0x0100),
    controller(0x13, 0x3F20),
    controller(0x42, 0x8300),
    controller(0x43, 0x0000),
    controller(tft_register::horizontal_window, all_columns),
    controller(tft_register::vertical_window, all_rows),
    controller(0x03, 0x7030),
    controller(0x02, 0x0600),
    controller(0x01, 0x011D),
    controller(0x30, 0x0000),
    controller(0x31, 0x0306),
    controller(0x32, 0x0001),
    controller(0x33, 0x0000),
    controller(0x34, 0x0404),
    controller(0x35, 0x0000),
    controller(0x36, 0x0707),
    controller(0x37, 0x0000),
    controller(0x38, 0x0101),
    controller(0x39, 0x0207),
    controller(0x07, 0x0037, 100),
    intensity(0xFF),
};

void wait(unsigned milliseconds) {
  if (milliseconds == 0)
    return;
  const timespec pause{0, static_cast<long>(milliseconds) * 1'000'000};
  nanosleep(&pause, nullptr);
}

} // namespace

std::optional<unsigned> tft_select_mask(int screen_id) {
  switch (screen_id) {
  case 0:
    return 1;
  case 1:
    return 2;
  case 2:
    return 4;
  case -1:
    return all_controllers;
  default:
    return std::nullopt;
  }
}

std::optional<unsigned> tft_checked_mask(int screen_id) {
  const std::optional<unsigned> mask = tft_select_mask(screen_id);
  if (!mask)
    print("Invalid screen ID %d.\n", screen_id);
  return mask;
}

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
    wait(step.wait_ms);
  }
}

int tft_set_intensity(unsigned percent) {
  if (percent > 100) {
    print("TFT Intensity is out of range: Must be between 0 and 100 %%.\n");
    return -1;
  }
  const unsigned level = percent * highest_intensity_level / 100;
  fpga_reg_write8(fpga_register::tft_intensity, static_cast<std::uint8_t>(intensity_enable | level));
  return 0;
}

int tft_blackout(int screen_id) {
  const std::optional<unsigned> mask = tft_checked_mask(screen_id);
  if (!mask)
    return -1;
  tft_reset_window();
  tft_start_pixels(*mask);
  std::array<std::uint16_t, screen_pixels> pixels{};
  pixels.fill(rgb888_to_rgb565(black));
  return tft_write_pixels(*mask, pixels.data(), screen_pixels);
}

} // namespace buttondriver::panel
