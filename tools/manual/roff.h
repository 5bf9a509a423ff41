// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// Pieces of manual pages, in the macros of man(7), out of plain text and of Markdown's simplest marks. All texts are
/// UTF-8, all results ASCII. Any thread may call.
namespace buttondriver::manual {

/// Text that is shown as it is: "-n" stays what can be typed. Not for the start of a line, see text_line().
std::string literal(std::string_view text);

/// The same in bold or in italics.
std::string bold(std::string_view text);
std::string italic(std::string_view text);

/// A line of text whose first character is nothing that roff would take for a request.
std::string text_line(const std::string &line);

/// Prose with `code` in bold and the texts of [links](elsewhere) alone; hyphens within words may break, all others stay
/// what can be typed.
std::string inline_text(std::string_view markdown);

/// Roff text, as of inline_text(), as lines: each sentence begins a line, and no line is much longer than 110
/// characters. Ends with a line feed, unless it is empty.
std::string filled(const std::string &roff_text);

/// filled(inline_text(markdown)).
std::string prose(std::string_view markdown);

/// Whole lines that are shown as they are, set off from the text around them.
std::string example(std::string_view lines);

/// A paragraph with `tag`, which is roff text, before it.
std::string tagged(const std::string &tag, const std::string &body);

} // namespace buttondriver::manual
