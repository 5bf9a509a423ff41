// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/panel/panel_report.h"

#include <QString>

namespace buttondriver::buttonctl {

/// What the panel shows, for people: whole lines, without control characters in the texts. It does not change while an
/// LED blinks.
QString state_text(const PanelReport &report);

/// Of that, the lines about LEDs, indicators and brightness.
QString lamps_text(const PanelReport &report);

} // namespace buttondriver::buttonctl
