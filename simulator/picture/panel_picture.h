// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"
#include "simulator/device/panel_state.h"

#include <QImage>
#include <QString>

namespace buttondriver::simulator {

/// The panel as a person in front of it sees it, opaque (QImage::Format_RGB32), of the size and with the places that
/// layout:: names. The same state gives the same picture. Needs neither a display nor fonts, a QCoreApplication is
/// enough; safe to call from any thread. The first call draws the dark panel, which later ones only light up.
///
/// A screen's pixels are those of screen_image(), each an exact square of layout::screen_scale pixels.
QImage draw_panel(const PanelState &state);

/// Writes `image` as a PNG file. The file appears complete, in one step, and takes the place of an older one; on
/// failure an older one stays as it is and nothing is left behind.
Outcome<Done> write_png(const QImage &image, const QString &file_name);

} // namespace buttondriver::simulator
