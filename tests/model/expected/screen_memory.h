// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

namespace buttondriver::test {

inline constexpr int glass_size = 128;

/// Inclusive edges of a drawing, in columns or rows of a controller's memory; any number, until the edges are cut.
struct Span {
  std::int64_t start;
  std::int64_t end;
};

inline constexpr Span all_columns = {4, 131};
inline constexpr Span all_rows = {1, 128};

/// What one screen's controller remembers.
class ScreenMemory {
public:
  ScreenMemory();

  /// Draws `pixels` into the window of these columns and rows: row by row from its first corner on, and from there
  /// again when it is full. The edges are first kept on the glass, a start from below and an end from above, and then
  /// cut to 8 bits, as are the counters that run from one edge to the other.
  void draw(Span columns, Span rows, const std::vector<std::uint16_t> &pixels);

  /// The pixels behind the glass, row by row from the top.
  std::vector<std::uint16_t> visible() const;

private:
  std::vector<std::uint16_t> _memory;
};

} // namespace buttondriver::test
