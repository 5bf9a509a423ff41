// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"

namespace buttondriver {

/// What has to be known of a JPEG file before its picture is read.
struct JpegOutline {
  /// Whether every table of codes has as many codes as it has room for. The library believes what tables say of
  /// themselves, and writes past its own.
  bool has_sound_tables = true;
  /// How the camera was held, as Exif numbers it: 1 to 8; 1 is upright.
  int orientation = 1;
};

/// `file` begins as a JPEG file does; what follows may be anything.
JpegOutline outline_of_jpeg(ByteView file);

} // namespace buttondriver
