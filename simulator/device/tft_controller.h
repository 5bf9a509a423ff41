// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/panel_changes.h"
#include "simulator/device/panel_state.h"

#include <array>
#include <cstdint>
#include <map>
#include <vector>

namespace buttondriver::simulator {

/// One TFT controller: what its index port and its data port do to its memory.
class TftController {
public:
  static constexpr unsigned memory_columns = 132;
  static constexpr unsigned memory_rows = 132;

  TftController();

  /// One half of a register index, high byte first.
  void writeIndex(std::uint8_t byte);
  /// A word for the selected register: a value, or a pixel.
  void writeData(std::uint16_t word);

  /// The value last written to a register, 0 when there was none.
  std::uint16_t registerValue(std::uint16_t index) const;
  /// The part of the memory that lies behind the glass: columns 4 to 131, rows 1 to 128.
  void copyVisible(ScreenPixels &pixels) const;

  /// Grows whenever a pixel gets another colour.
  std::uint64_t revision() const { return _revision; }
  /// The visible rows in which a pixel has got another colour after `revision`, neighbours together.
  std::vector<ScreenRows> rowsChangedSince(std::uint64_t revision) const;

private:
  void writePixel(std::uint16_t pixel);

  std::uint16_t _index = 0;
  std::map<std::uint16_t, std::uint16_t> _registers;
  // The window's inclusive edges, and where in it the next pixel goes. All run in 8 bits, as the registers have them.
  std::uint8_t _start_column;
  std::uint8_t _end_column;
  std::uint8_t _start_row;
  std::uint8_t _end_row;
  std::uint8_t _column;
  std::uint8_t _row;
  std::vector<std::uint16_t> _memory; // row by row
  std::uint64_t _revision = 0;
  std::array<std::uint64_t, memory_rows> _row_revisions{};
};

} // namespace buttondriver::simulator
