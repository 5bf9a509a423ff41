// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"
#include "pictures/picture.h"

#include <QByteArray>

/// Pictures from files and into files. Only picture_file.cpp knows the library that does it.
namespace buttondriver {

/// What a picture may have at most; a file can claim any number.
constexpr int longest_side = 32768;
constexpr std::int64_t most_pixels = std::int64_t{32} * 1024 * 1024;

/// The picture in a PNG, JPEG, BMP or GIF file, of a GIF the first one; transparent parts are laid on black. The
/// failure does not name the file. No file makes this take more than some 20 bytes of memory for each of `most_pixels`.
Outcome<Picture> read_picture(const QByteArray &file);

/// The size of the picture that read_picture() reads from `file`, from what stands before the pixels: nothing is
/// decompressed. Fails when that tells already that the file cannot be read.
Outcome<QSize> size_of_picture(const QByteArray &file);

/// As read_picture, from a file with that name. The failure does not name it either.
Outcome<Picture> read_picture_file(const QString &name);

/// `picture` with `size`, which is at least 1 by 1: smoothed, its proportions not kept. A picture of one colour keeps
/// it.
Picture scaled(const Picture &picture, QSize size);

/// `picture`, which is not null, as a PNG file; the same bytes for the same pixels.
QByteArray write_png(const Picture &picture);

} // namespace buttondriver
