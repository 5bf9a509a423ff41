// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace buttondriver {

/// `text` (Latin-1) for the log: control characters come out as `\x` and two hexadecimal digits, so that a client's
/// text can neither start a line of its own nor control a terminal. All other characters, the backslash too, stay as
/// they are.
std::string visible_text(std::string_view text);

} // namespace buttondriver
