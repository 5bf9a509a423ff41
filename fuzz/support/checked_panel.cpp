// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/checked_panel.h"

#include "fuzz/support/require.h"
#include "panel/registers/registers.h"
#include "panel/tft/pixel_window.h"

namespace buttondriver::fuzz {

namespace {

namespace fpga_register = panel::fpga_register;
namespace tft_register = panel::tft_register;

/// The first port is that of the mask without a controller: nobody is meant by it.
constexpr unsigned first_tft_port = fpga_register::tft_index_base + 2;
constexpr unsigned last_tft_port = fpga_register::tft_data_base + 2 * panel::all_controllers;
constexpr std::uint32_t most_words = 0xFFFF;

bool is_tft_port(unsigned address) { return address >= first_tft_port && address <= last_tft_port; }

bool is_register(unsigned address) {
  return address == fpga_register::tft_intensity || address == fpga_register::led_command ||
         address == fpga_register::toggle_indicators || is_tft_port(address);
}

} // namespace

CheckedPanel::CheckedPanel() {
  _controllers.fill({0, panel::all_columns, panel::all_rows});
  panel::use_register_device(this);
}

CheckedPanel::~CheckedPanel() { panel::use_register_device(nullptr); }

int CheckedPanel::open(const char *path) { return _panel.open(path); }

int CheckedPanel::transfer(int descriptor, unsigned long request, panel::TransferRecord &record, std::uint16_t *words) {
  require(request == panel::short_form_request, "every register has a short address");
  require((record.address_low & panel::short_form::read) == 0, "the daemon only writes");
  require(record.count <= most_words, "a transfer's count has 16 bits");
  const unsigned address = record.address_low & panel::short_form::address_mask;
  require(is_register(address), "only registers that the panel has are written");
  const auto word = static_cast<std::uint16_t>(record.value);
  // Reads every word, so that a sanitizer sees whether they all are the caller's.
  const int result = _panel.transfer(descriptor, request, record, words);
  require(result == 0, "no transfer is refused");
  if (record.count == 1 && is_tft_port(address))
    follow(address - fpga_register::tft_index_base, word);
  return result;
}

void CheckedPanel::follow(unsigned port, std::uint16_t word) {
  const unsigned mask = port / 2;
  const bool is_index = port % 2 == 0;
  for (std::size_t screen = 0; screen < _controllers.size(); ++screen) {
    Controller &controller = _controllers[screen];
    if ((mask >> screen & 1) == 0)
      continue;
    if (is_index)
      controller.index = static_cast<std::uint16_t>(controller.index << 8 | word >> 8);
    else if (controller.index == tft_register::horizontal_window)
      controller.columns = word;
    else if (controller.index == tft_register::vertical_window)
      controller.rows = word;
  }
}

void CheckedPanel::require_whole_windows() const {
  for (const Controller &controller : _controllers)
    require(controller.columns == panel::all_columns && controller.rows == panel::all_rows,
            "a drawing leaves the whole glass as the window");
}

} // namespace buttondriver::fuzz
