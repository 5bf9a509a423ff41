// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/look/terminal.h"

#include "buttonctl/session/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace buttondriver::buttonctl {

namespace {

constexpr int usual_columns = 80;
constexpr int usual_rows = 24;

const QString begin_full_screen = QStringLiteral("\x1b[?1049h\x1b[?25l\x1b[2J");
const QString end_full_screen = QStringLiteral("\x1b[0m\x1b[?25h\x1b[?1049l");
const QString first_place = QStringLiteral("\x1b[H");
const QString clear_rest_of_line = QStringLiteral("\x1b[K");
const QString clear_rest_of_screen = QStringLiteral("\x1b[J");

/// A number from the environment that can be a size.
int size_in(const char *variable, int fallback) {
  constexpr int largest = 10000;
  const int size = qEnvironmentVariableIntValue(variable);
  return size > 0 && size <= largest ? size : fallback;
}

} // namespace

TerminalFacts terminal_facts() {
  return {isatty(STDOUT_FILENO) != 0, qgetenv("TERM"), qgetenv("COLORTERM"), qgetenv("NO_COLOR")};
}

Colours colours_of(const TerminalFacts &facts) {
  if (!facts.is_terminal || !facts.no_color.isEmpty() || facts.term.isEmpty() || facts.term == "dumb")
    return Colours::none;
  if (facts.colorterm == "truecolor" || facts.colorterm == "24bit" || facts.term.endsWith("-direct"))
    return Colours::all;
  return Colours::few;
}

QSize terminal_size() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0)
    return {int{size.ws_col}, int{size.ws_row}};
  return {size_in("COLUMNS", usual_columns), size_in("LINES", usual_rows)};
}

FullScreen::FullScreen() { print(begin_full_screen); }

FullScreen::~FullScreen() {
  print(end_full_screen);
  flush_output();
}

void FullScreen::show(const QStringList &lines) {
  // No line end after the last line: it would scroll when the terminal is as high as the frame.
  print(first_place + lines.join(clear_rest_of_line + QLatin1String("\r\n")) + clear_rest_of_line +
        clear_rest_of_screen);
  flush_output();
}

} // namespace buttondriver::buttonctl
