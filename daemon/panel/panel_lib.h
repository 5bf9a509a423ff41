// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace buttondriver::panel {

/// Opens the register device and starts FreeType. Nothing is printed on failure: without a device every transfer fails
/// quietly, without FreeType no text is drawn. Called once, before anything else of this room.
void panel_lib_init();

/// Whether panel_lib_init was called, whatever it found. Nothing here reads it.
extern bool panel_lib_initialised;

/// Ends FreeType and gives up its font. The daemon never calls it: both live until the process ends.
void panel_lib_done();

} // namespace buttondriver::panel
