// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

namespace buttondriver::simulator {

/// The catalogue of messages for the page: an array of {"opcode", "name", "meaning", "handling", "counted",
/// "head_size", "fields": [{"name", "offset", "width", "kind", "meaning"}]}.
QByteArray catalogue_json();

} // namespace buttondriver::simulator
