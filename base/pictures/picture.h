// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRect>
#include <QSize>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace buttondriver {

/// Each component is 0 to 255.
struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  friend bool operator==(const Colour &one, const Colour &other) {
    return one.red == other.red && one.green == other.green && one.blue == other.blue;
  }
  friend bool operator!=(const Colour &one, const Colour &other) { return !(one == other); }
};

/// Opaque pixels of 24 bits, as the screens show them. A value: it owns its pixels, and a copy has its own.
class Picture {
public:
  /// A picture without pixels, which stands for none.
  Picture() = default;
  /// Both sides at least 1 pixel.
  explicit Picture(QSize size, Colour fill = {});

  bool isNull() const { return _pixels.empty(); }
  QSize size() const { return _size; }
  int width() const { return _size.width(); }
  int height() const { return _size.height(); }
  /// Whether there is a pixel at `x`, `y`.
  bool contains(int x, int y) const { return x >= 0 && y >= 0 && x < width() && y < height(); }

  /// Only for places that the picture contains.
  Colour at(int x, int y) const { return _pixels[place(x, y)]; }
  void set(int x, int y, Colour colour) { _pixels[place(x, y)] = colour; }

  /// All components: red, green and blue of each pixel, row after row from the top, nothing between rows. Borrowed.
  const std::uint8_t *components() const { return reinterpret_cast<const std::uint8_t *>(_pixels.data()); }
  std::uint8_t *components() { return reinterpret_cast<std::uint8_t *>(_pixels.data()); }

  /// The part of it that `region` covers, which lies inside.
  Picture cut(QRect region) const;

  /// The picture of a camera that was held as `orientation` says, 1 to 8 as in Exif, as it was seen.
  Picture turnedUpright(int orientation) const;

private:
  std::size_t place(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width()) + static_cast<std::size_t>(x);
  }

  QSize _size{0, 0};
  std::vector<Colour> _pixels;
};

} // namespace buttondriver
