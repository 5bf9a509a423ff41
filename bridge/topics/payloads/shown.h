// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLatin1String>
#include <QString>

#include <string_view>

namespace buttondriver::bridge {

/// What somebody sent, for a line that others read: at most some 64 characters, all of them printable ASCII. Other
/// bytes are numbers, "\x0a"; where something is left out, "..." stands.
QString shown(std::string_view bytes);

/// Latin-1 that is known to be right, as the names of a table.
inline QLatin1String latin1(std::string_view text) { return QLatin1String(text.data(), static_cast<int>(text.size())); }

} // namespace buttondriver::bridge
