// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QByteArray>

#include <cstdint>

namespace buttondriver::bridge {

/// Some characters of a line, in the numbers of the message.
struct LinePart {
  std::int32_t line = 0;
  std::int32_t offset = 0;
  std::int32_t chars = 0; ///< to write
  std::uint32_t colour = 0xFFFFFF;
  std::uint32_t background = 0x000000;
  QByteArray text; ///< in Latin-1, `chars` long, filled up with blanks
};

/// The JSON object {"line", "offset", "text", "chars", "colour", "background"}; the last three may be left out. Nothing
/// else may stand in it. The failure names the key.
Outcome<LinePart> line_part(const QByteArray &payload);

} // namespace buttondriver::bridge
