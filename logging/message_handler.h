#pragma once

namespace buttondriver {

/// Sends the Qt message channel to standard error, one line a message with its text unchanged, whatever the
/// environment says and whether or not the standard error is a terminal. A failing standard error is ignored, and so is
/// the signal that a reader's going away sends: neither a closed pipe nor a full disk ends the program.
/// Called once by a program's main, before anything logs.
void install_message_handler();

} // namespace buttondriver
