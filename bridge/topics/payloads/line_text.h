// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>

#include <cstddef>
#include <string_view>

/// Texts as they are published, in UTF-8, and as the panel takes them, in Latin-1: its characters but those that
/// control something.
namespace buttondriver::bridge {

/// Characters that a line can have at most: a font is at least one pixel wide.
inline constexpr std::size_t most_line_characters = 128;

/// How many characters `text` has, all of which the panel knows. The failure names the first one that is wrong, and
/// where it stands. Takes no memory unless it fails.
Outcome<std::size_t> characters_of(std::string_view text);

/// As characters_of(), for a text that is a value of JSON.
Outcome<std::size_t> characters_of(const QString &text);

/// Writes the first `count` characters of `text`, for which characters_of() has not failed and which has that many.
void write_latin1(std::string_view text, std::size_t count, char *destination);

} // namespace buttondriver::bridge
