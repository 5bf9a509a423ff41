// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QImage>

namespace buttondriver::simulator {

/// The bare metal plate with its screws, on what it lies on: an opaque picture of the size that the layout says.
QImage draw_plate();

} // namespace buttondriver::simulator
