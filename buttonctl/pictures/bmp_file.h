// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <optional>

/// The picture format of the screens: an uncompressed 24-bit BMP file, bottom row first, with a 40-byte information
/// header.
namespace buttondriver::buttonctl {

/// The size in pixels when `file` is a whole picture of that format; nothing when it must be converted.
std::optional<QSize> size_of_screen_bmp(ByteView file);

/// True when `file` is an uncompressed BMP of any kind that ends before its last row. Qt reads such a file without
/// complaint and leaves the rest of the picture undefined.
bool is_cut_short_bmp(ByteView file);

/// `image` in that format; transparent parts come out as on the screens' black.
QByteArray write_screen_bmp(const QImage &image);

} // namespace buttondriver::buttonctl
