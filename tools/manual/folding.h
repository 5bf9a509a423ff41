// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Lines that are too long for the example of a manual page, as several ones. Any thread may call.
namespace buttondriver::manual {

/// Columns that a page of 80 has for examples: seven are the margin, four set them off.
inline constexpr std::size_t example_width = 69;

/// `line` in pieces of at most `width` characters where it has blanks to part it at, or else commas. What follows
/// stands below the last of its columns, which two blanks part.
std::string folded(const std::string &line, std::size_t width);

/// Command lines of a shell, those that an example has no room for with a backslash at a blank outside of quotes.
std::string folded_commands(std::string_view lines);

} // namespace buttondriver::manual
