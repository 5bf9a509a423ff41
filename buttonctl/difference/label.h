// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "pictures/picture.h"

#include <string_view>

namespace buttondriver::buttonctl {

/// Rows of pixels that a label takes.
constexpr int label_height = 18;

/// Writes `text` in black, its top left corner at `x`, `y`. It has the letters of "expected", "actual" and
/// "difference"; others are left blank. What does not fit into the picture is left out.
void draw_label(Picture &picture, int x, int y, std::string_view text);

} // namespace buttondriver::buttonctl
