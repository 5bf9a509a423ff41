// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

namespace buttondriver::manual {

/// `page` with `text`, whole lines of roff, between the comments that mark the part `name`:
///
///     .\" begin NAME: ...
///     .\" end NAME
///
/// None when the page lacks one of these lines.
std::optional<std::string> with_part(const std::string &page, const std::string &name, const std::string &text);

} // namespace buttondriver::manual
