// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"
#include "pictures/picture.h"

#include <QByteArray>
#include <QSize>

#include <optional>

/// The picture format of the screens: an uncompressed 24-bit BMP file, bottom row first, with a 40-byte information
/// header.
namespace buttondriver {

/// The size in pixels when `file` is a whole picture of that format; nothing when it must be converted.
std::optional<QSize> size_of_screen_bmp(ByteView file);

/// True when `file` is an uncompressed BMP of any kind that ends before its last row is complete.
bool is_cut_short_bmp(ByteView file);

/// True when `file` is a BMP that does not say that a part of its pixels is opacity. With 32 bits a pixel, that part is
/// there, but programs leave anything in it.
bool is_bmp_without_opacity(ByteView file);

/// `picture` in that format.
QByteArray write_screen_bmp(const Picture &picture);

} // namespace buttondriver
