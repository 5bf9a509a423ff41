// SPDX-License-Identifier: Apache-2.0
#include "simulator/device/tft_controller.h"

#include "panel/registers/registers.h"

#include <algorithm>

namespace buttondriver::simulator {

namespace tft_register = panel::tft_register;

namespace {

constexpr std::uint8_t high_byte(std::uint16_t word) { return static_cast<std::uint8_t>(word >> 8); }
constexpr std::uint8_t low_byte(std::uint16_t word) { return static_cast<std::uint8_t>(word); }

} // namespace

TftController::TftController()
    : _start_column(panel::first_column), _end_column(panel::last_column), _start_row(panel::first_row),
      _end_row(panel::last_row), _column(_start_column), _row(_start_row),
      _memory(std::size_t{memory_columns} * memory_rows) {}

void TftController::writeIndex(std::uint8_t byte) { _index = static_cast<std::uint16_t>(_index << 8 | byte); }

void TftController::writeData(std::uint16_t word) {
  if (_index == tft_register::write_ram) {
    writePixel(word);
    return;
  }
  _registers[_index] = word;
  switch (_index) {
  case tft_register::horizontal_window:
    _start_column = low_byte(word);
    _end_column = high_byte(word);
    break;
  case tft_register::vertical_window:
    _start_row = low_byte(word);
    _end_row = high_byte(word);
    break;
  case tft_register::ram_address:
    _column = _start_column;
    _row = _start_row;
    break;
  default:
    break;
  }
}

void TftController::writePixel(std::uint16_t pixel) {
  if (_column < memory_columns && _row < memory_rows) {
    std::uint16_t &place = _memory[std::size_t{_row} * memory_columns + _column];
    if (place != pixel)
      _row_revisions[_row] = ++_revision;
    place = pixel;
  }
  if (_column != _end_column) {
    ++_column;
    return;
  }
  _column = _start_column;
  _row = _row == _end_row ? _start_row : static_cast<std::uint8_t>(_row + 1);
}

std::uint16_t TftController::registerValue(std::uint16_t index) const {
  const auto place = _registers.find(index);
  return place == _registers.end() ? std::uint16_t{0} : place->second;
}

void TftController::copyVisible(ScreenPixels &pixels) const {
  auto *destination = pixels.data();
  for (int row = panel::first_row; row <= panel::last_row; ++row) {
    const auto source = _memory.begin() + row * int{memory_columns} + panel::first_column;
    destination = std::copy_n(source, dimensions::screen_width, destination);
  }
}

std::vector<ScreenRows> TftController::rowsChangedSince(std::uint64_t revision) const {
  std::vector<ScreenRows> runs;
  if (_revision <= revision)
    return runs;
  bool is_in_run = false;
  for (std::size_t row = 0; row < dimensions::screen_height; ++row) {
    const std::size_t memory_row = row + panel::first_row;
    const bool is_changed = _row_revisions[memory_row] > revision;
    if (is_changed && !is_in_run)
      runs.push_back({row, {}});
    is_in_run = is_changed;
    if (!is_changed)
      continue;
    const auto *source = _memory.data() + memory_row * memory_columns + panel::first_column;
    runs.back().pixels.insert(runs.back().pixels.end(), source, source + dimensions::screen_width);
  }
  return runs;
}

} // namespace buttondriver::simulator
