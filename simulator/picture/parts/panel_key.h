// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPainter>

#include <cstddef>

namespace buttondriver::simulator {

/// The key of a button LED with its number, its lamp off. `id` is below dimensions::button_count.
void draw_dark_key(QPainter &painter, std::size_t id);

/// What changes on that key when its lamp is on; drawn over the dark key.
void draw_key_light(QPainter &painter, std::size_t id);

} // namespace buttondriver::simulator
