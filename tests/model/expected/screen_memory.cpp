// SPDX-License-Identifier: Apache-2.0
#include "model/expected/screen_memory.h"

#include <algorithm>

namespace buttondriver::test {

namespace {

constexpr unsigned memory_size = 132;

/// The places that a counter of 8 bits visits on its way from one edge to the other, the edges included.
struct Round {
  unsigned first;
  unsigned count;

  unsigned place(unsigned step) const { return (first + step) & 0xFFU; }
};

Round round_of(Span span, Span glass) {
  const auto start = static_cast<unsigned>(std::max(span.start, glass.start)) & 0xFFU;
  const auto end = static_cast<unsigned>(std::min(span.end, glass.end)) & 0xFFU;
  return {start, ((end - start) & 0xFFU) + 1};
}

} // namespace

ScreenMemory::ScreenMemory() : _memory(memory_size * memory_size) {}

void ScreenMemory::draw(Span columns, Span rows, const std::vector<std::uint16_t> &pixels) {
  const Round across = round_of(columns, all_columns);
  const Round down = round_of(rows, all_rows);
  for (unsigned i = 0; i < pixels.size(); ++i) {
    const unsigned column = across.place(i % across.count);
    const unsigned row = down.place(i / across.count % down.count);
    if (column < memory_size && row < memory_size)
      _memory[row * memory_size + column] = pixels[i];
  }
}

std::vector<std::uint16_t> ScreenMemory::visible() const {
  std::vector<std::uint16_t> pixels;
  pixels.reserve(glass_size * glass_size);
  for (auto row = static_cast<unsigned>(all_rows.start); row <= static_cast<unsigned>(all_rows.end); ++row) {
    const auto first = _memory.begin() + static_cast<std::ptrdiff_t>(row * memory_size + all_columns.start);
    pixels.insert(pixels.end(), first, first + glass_size);
  }
  return pixels;
}

} // namespace buttondriver::test
