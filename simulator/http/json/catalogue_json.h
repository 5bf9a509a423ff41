// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

namespace buttondriver::simulator {

/// What the page has to know of the panel and of the messages: {"panel", "messages"}. "panel" has the dimensions, by
/// the names of panel_dimensions.h or nearly so, and "default_port", the daemon's. "messages" is an array of {"opcode",
/// "name", "meaning", "handling", "counted", "head_size", "fields": [{"name", "offset", "width", "kind", "is_colour",
/// "meaning"}]}. A field that is a number also has its range, "lowest" and "highest", and "named": [{"first", "last",
/// "name"}].
QByteArray catalogue_json();

} // namespace buttondriver::simulator
