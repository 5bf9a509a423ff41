// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/registers.h"
#include "panel/tft/pixel_window.h"

#include <chrono>
#include <cstdint>

/// What is written to the TFT controllers after power-on, step by step, to all of them at once. Controller registers
/// that are used nowhere else have no name here; they stand as their numbers.
namespace buttondriver::panel {

/// A register, the value that goes into it, and the wait after that.
struct PowerOnStep {
  enum class Target : std::uint8_t {
    intensity,  ///< the FPGA's register; the value is its high byte
    controller, ///< register `index` of all controllers
  } target;
  std::uint8_t index;
  std::uint16_t value;
  std::chrono::milliseconds wait;
};

namespace power_on_detail {

using std::chrono::milliseconds;
using namespace std::chrono_literals;

constexpr PowerOnStep intensity(std::uint8_t byte) { return {PowerOnStep::Target::intensity, 0, byte, 0ms}; }
constexpr PowerOnStep controller(std::uint8_t index, std::uint16_t value, milliseconds wait = 0ms) {
  return {PowerOnStep::Target::controller, index, value, wait};
}

inline constexpr PowerOnStep sequence[] = {
    // Dark: level 0, at first with both enable bits clear, then with the upper one set.
    intensity(0x00),
    intensity(0x80),

    // Start in three stages. Registers 0x04, 0x10 and 0x11 change from stage to stage; each stage ends with a wait.
    controller(0x00, 0x0013),
    controller(0x11, 0x7447),
    controller(0x12, 0x0012),
    controller(0x11, 0x4477),
    controller(0x10, 0x2020, 3ms),

    controller(0x04, 0x0002),
    controller(0x10, 0x2120, 3ms),

    controller(0x11, 0x3307),
    controller(0x04, 0x0000, 3ms),

    // Settings that stay, with the whole screen as the window.
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

    // The block of ten registers from 0x30 on.
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

    // The last setting; the controllers get 100 ms before the screens are lit.
    controller(0x07, 0x0037, 100ms),

    // Lit, at the highest level.
    intensity(full_intensity),
};

} // namespace power_on_detail

inline constexpr auto &power_on_sequence = power_on_detail::sequence;

} // namespace buttondriver::panel
