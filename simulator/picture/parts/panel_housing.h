// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QImage>

namespace buttondriver::simulator {

/// The panel without power: plate, glass, keys, legends, every lamp and every segment dark, the screens black.
QImage draw_housing();

} // namespace buttondriver::simulator
