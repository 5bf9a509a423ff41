// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

namespace buttondriver {

/// A copy of a text for a line of a screen. One that fits on a line in the usual fonts takes no memory beside it.
class LineText {
public:
  explicit LineText(std::string_view text) : _size(text.size()) {
    if (_size > usual)
      _long.reset(new char[_size]);
    std::copy(text.begin(), text.end(), _long ? _long.get() : _short);
  }

  std::string_view view() const { return {_long ? _long.get() : _short, _size}; }
  std::size_t size() const { return _size; }

private:
  /// As many as stand in a line with characters of four pixels.
  static constexpr std::size_t usual = 32;

  std::size_t _size;
  std::unique_ptr<char[]> _long;
  char _short[usual];
};

} // namespace buttondriver
