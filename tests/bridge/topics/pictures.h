// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/hex.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>

namespace buttondriver::test {

/// A picture of that size in one colour, as a file of `format`, such as "PNG".
inline QByteArray picture_file(int width, int height, const char *format) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(qRgb(1, 2, 3));
  QByteArray file;
  QBuffer buffer(&file);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format);
  return file;
}

/// Red and green above blue and white: an uncompressed 24-bit BMP of 2 x 2 pixels, written by hand.
inline const char *const bmp_of_four_pixels =
    "42 4d 46 00 00 00 00 00 00 00 36 00 00 00 28 00 00 00 02 00 00 00 02 00 00 00 01 00 18 00 "
    "00 00 00 00 10 00 00 00 13 0b 00 00 13 0b 00 00 00 00 00 00 00 00 00 00 "
    "ff 00 00 ff ff ff 00 00 00 00 ff 00 ff 00 00 00";

inline QByteArray bytes_of(const char *hexadecimal) { return QByteArray::fromStdString(from_hex(hexadecimal)); }

} // namespace buttondriver::test
