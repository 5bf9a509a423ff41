// SPDX-License-Identifier: Apache-2.0
#pragma once

/// What the simulator itself tells the person who has started it, beside the log of the daemon in it. State is
/// process-wide; it is set before other threads start.
namespace buttondriver::simulator {

enum class Notices {
  faults, ///< only what went wrong
  usual,  ///< what somebody has to know
  all,    ///< and what may help
};

void choose_notices(Notices notices);

/// From now on, what is written to standard output and standard error goes to `file`, which is made or emptied, but for
/// notices: these go where they went before. Returns 0, or -1 with errno when the file cannot be opened.
int move_log(const char *file);

/// Formats as std::printf does, and writes the text to standard output.
void tell(const char *format, ...) __attribute__((format(printf, 1, 2)));
/// The same for what is told with Notices::all only.
void tell_detail(const char *format, ...) __attribute__((format(printf, 1, 2)));
/// Always, and to standard error.
void tell_fault(const char *format, ...) __attribute__((format(printf, 1, 2)));

} // namespace buttondriver::simulator
