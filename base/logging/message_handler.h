// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace buttondriver {

/// Sends the Qt message channel to standard error, one line a message with its text unchanged, whatever the
/// environment variables of Qt ask for and whether or not the standard error is a terminal. A failing standard error is
/// ignored. Called once by a program's main, before anything logs.
void install_message_handler();

/// Whether that handler is the one that Qt calls now. Once another one was found, it is false until the handler is
/// installed again.
bool is_message_handler_in_use();

/// What the handler does with a message of a level that does not end the program. `line` has its line feed.
void write_message_line(std::string_view line);

} // namespace buttondriver
