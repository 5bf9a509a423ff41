// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/hex.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>

namespace buttondriver::test {

/// `image` as a file of `format`, such as "PNG".
inline QByteArray encoded(const QImage &image, const char *format) {
  QByteArray file;
  QBuffer buffer(&file);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format);
  return file;
}

inline QImage filled(int width, int height, QRgb colour) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(colour);
  return image;
}

/// 2 x 2 pixels, written by hand: blue, green over red, white. The creator fields and the two bytes after the pixels
/// are such as no converter would write.
inline QByteArray bmp_2x2() {
  return QByteArray::fromStdString(from_hex("424d 48000000 1122 3344 36000000 28000000 02000000 02000000 0100 1800"
                                            "00000000 00000000 00000000 00000000 00000000 00000000"
                                            "0000ff ffffff 0000"
                                            "ff0000 00ff00 0000"
                                            "abcd"));
}

} // namespace buttondriver::test
