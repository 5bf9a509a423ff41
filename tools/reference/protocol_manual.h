// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

namespace buttondriver::documents {

/// The manual page of the command protocol, buttondriver-protocol(7): what docs/protocol.md has, for a terminal.
std::string protocol_manual();

/// The daemon's manual page with the limits as they are now; none when it lacks a mark of that part.
std::optional<std::string> with_limits(const std::string &page);

} // namespace buttondriver::documents
