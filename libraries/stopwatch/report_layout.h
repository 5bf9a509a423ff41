// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace stopwatch {

/// Widths of the columns that all kinds of event share, in characters.
inline constexpr int name_width = 15;
inline constexpr int description_width = 35;

/// The line above and below the column headings: 88 characters.
inline constexpr char header_rule[] = "============================================"
                                      "============================================";
static_assert(sizeof header_rule == 88 + 1);

} // namespace stopwatch
