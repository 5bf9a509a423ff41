// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/look/half_blocks.h"
#include "buttonctl/panel/panel_report.h"

#include <QSize>
#include <QStringList>

#include <vector>

namespace buttondriver::buttonctl {

/// What a terminal of `size` columns and rows shows of the panel: its screens side by side, as large as they fit, at
/// most one column for a pixel, and below them what is lit. Lines that are too long are cut. `colours` is not none.
QStringList frame(const std::vector<Picture> &screens, const PanelReport &report, Colours colours, QSize size);

} // namespace buttondriver::buttonctl
