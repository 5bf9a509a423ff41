// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

namespace buttondriver::simulator {

/// The panel's lettering for the page: an object of {"width", "strokes"} by character, in the form of lettering.h.
QByteArray lettering_json();

} // namespace buttondriver::simulator
