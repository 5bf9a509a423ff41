// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bytes/byte_view.h"

namespace buttondriver {

/// Whether `bmp` is a BMP file that the panel can show: 24 bits a pixel, uncompressed, a header of 40 bytes, and all of
/// its pixels there. The daemon is less strict, but what it draws then is nothing that anybody wants to see.
bool is_drawable_bmp(ByteView bmp);

} // namespace buttondriver
