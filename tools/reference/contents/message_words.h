// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/catalogue.h"
#include "tools/reference/contents/worked_example.h"

#include <cstddef>
#include <string>

/// What the catalogue says of a message, in the words of the pages.
namespace buttondriver::documents {

std::string title(const MessageType &type);

/// In Markdown: "20 + `n`".
std::string size_in_words(const MessageType &type);

/// "u32" or "120 bytes".
std::string type_in_words(const Field &field);

/// What follows the head, in Markdown: "`n` x u32". Only for a type that counts something.
std::string variable_type_in_words(const MessageType &type);

/// What a field means, its value where it is the opcode.
std::string meaning_of(const MessageType &type, const Field &field);

/// The example's bytes, with what each field is beside them; whole lines of `bytes_a_line` bytes at most.
std::string example_lines(const MessageType &type, const WorkedExample &example, std::size_t bytes_a_line);

} // namespace buttondriver::documents
