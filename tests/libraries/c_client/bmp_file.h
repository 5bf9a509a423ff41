// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/hex.h"

#include <string>

namespace buttondriver::test {

/// A BMP file of 2 x 2 pixels, written by hand: 54 bytes of header, then two rows of 6 bytes, each padded by 2. From
/// the bottom: blue and white, red and green.
inline std::string bmp_file() {
  return from_hex("424d 46000000 0000 0000 36000000 "
                  "28000000 02000000 02000000 0100 1800 00000000 10000000 00000000 00000000 00000000 00000000 "
                  "ff0000 ffffff 0000 "
                  "0000ff 00ff00 0000");
}

} // namespace buttondriver::test
