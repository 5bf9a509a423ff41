// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace buttondriver {

/// Sends the Qt message channel to standard error, one line a message with its text unchanged, whatever the
/// environment variables of Qt ask for and whether or not the standard error is a terminal. A failing standard error is
/// ignored. Called once by a program's main, before anything logs.
void install_message_handler();

} // namespace buttondriver
