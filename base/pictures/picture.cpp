// SPDX-License-Identifier: Apache-2.0
#include "pictures/picture.h"

namespace buttondriver {

static_assert(sizeof(Colour) == 3, "the components of a picture lie side by side");

Picture::Picture(QSize size, Colour fill)
    : _size(size), _pixels(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()), fill) {}

Picture Picture::cut(QRect region) const {
  Picture part(region.size());
  for (int y = 0; y < region.height(); ++y)
    for (int x = 0; x < region.width(); ++x)
      part.set(x, y, at(region.x() + x, region.y() + y));
  return part;
}

Picture Picture::turnedUpright(int orientation) const {
  // From 5 on, columns become rows. What remains then are the mirrors.
  const bool is_transposed = orientation >= 5;
  const bool from_the_right = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const bool from_the_bottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  Picture result(is_transposed ? _size.transposed() : _size);
  for (int y = 0; y < result.height(); ++y) {
    for (int x = 0; x < result.width(); ++x) {
      const int column = is_transposed ? y : x;
      const int row = is_transposed ? x : y;
      result.set(x, y, at(from_the_right ? width() - 1 - column : column, from_the_bottom ? height() - 1 - row : row));
    }
  }
  return result;
}

} // namespace buttondriver
