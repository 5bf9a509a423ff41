// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "pictures/picture.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace buttondriver::buttonctl {

/// What a terminal can show.
enum class Colours {
  none, ///< nothing but text
  few,  ///< 256 of them, as xterm has them
  all,  ///< 24 bits
};

/// The number of the colour of a terminal's 256 that is nearest to `colour`, 16 to 255: one of the cube of 6 x 6 x 6,
/// or a grey. The first 16 are left out, since every terminal has its own.
int nearest_of_256(Colour colour);

/// Lines of characters that show `pictures` side by side, each two pixels high: its upper half in the colour of
/// the character, the lower one in that of its background. Each line ends in the terminal's own colours. The pictures
/// have the same height; a missing row below is black. `colours` is not none.
QStringList half_blocks(const std::vector<Picture> &pictures, Colours colours);

} // namespace buttondriver::buttonctl
