// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace buttondriver {

/// `text` for the log: the control characters 0x00 to 0x1F and 0x7F come out as `\x` and two hexadecimal digits, so
/// that a client's text can neither start a line of its own nor control a terminal. All other bytes, the backslash too,
/// stay as they are, in whatever encoding they came: UTF-8 passes whole.
std::string visible_text(std::string_view text);
/// Appends the same to `line`.
void append_visible(std::string &line, std::string_view text);

} // namespace buttondriver
