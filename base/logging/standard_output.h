// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace buttondriver {

/// Writes a formatted text, as std::printf does, and passes it on to whoever reads standard output at once, also
/// without a line feed and when standard output is a pipe or a file. What standard output does not take is lost, see
/// LogChannel. Text that the program itself wrote with stdio comes out before it, and text that it writes later after
/// it. Safe to call from any thread; one call's text stays together. Returns the text's length in bytes, also when it
/// is lost; negative for a format that cannot be carried out.
///
/// A program that gathers its log, see LogGathering, writes it a little later, and nothing with stdio meanwhile.
int print(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Writes `text` and a line feed, as std::puts does; otherwise as `print`.
void print_line(const char *text);

/// Writes `text` as it is; otherwise as `print`.
void print_text(std::string_view text);

/// As `print`, to standard error and past the observer.
int print_error(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// Called with every text that these functions write to standard output, as it is written and in the same order.
using PrintObserver = void (*)(std::string_view text);

/// Has `observer` called from now on, by whichever thread prints; null ends that. It must not print itself.
void observe_prints(PrintObserver observer);

} // namespace buttondriver
