// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/session/console.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace buttondriver::buttonctl {

namespace {

/// Ends the program without a word when nobody reads standard output any more, as SIGPIPE ends other tools. Qt ignores
/// that signal as soon as there is a socket, and then writing fails instead.
void end_if_nobody_reads(int error_number) {
  if (error_number != EPIPE)
    return;
  constexpr int status_in_a_shell = 128 + SIGPIPE;
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
  std::_Exit(status_in_a_shell); // where the signal is blocked
}

} // namespace

QString as_one_line(const QString &text) {
  QString line;
  for (const QChar character : text) {
    if (character.category() == QChar::Other_Control)
      line += QStringLiteral("\\x%1").arg(int{character.unicode()}, 2, 16, QLatin1Char('0'));
    else
      line += character;
  }
  return line;
}

void print(const QString &text) { print_bytes(text.toUtf8()); }

void print_bytes(const QByteArray &bytes) {
  const auto size = static_cast<std::size_t>(bytes.size());
  if (std::fwrite(bytes.constData(), 1, size, stdout) < size)
    end_if_nobody_reads(errno);
}

void print_line(const QString &text) {
  print(text + QLatin1Char('\n'));
  flush_output();
}

bool flush_output() {
  if (std::fflush(stdout) != 0)
    end_if_nobody_reads(errno);
  return std::ferror(stdout) == 0;
}

void print_error(const QString &text) { std::fputs(text.toUtf8().constData(), stderr); }

void warn(const QString &text, const QString &where) {
  std::fprintf(stderr, "buttonctl: %s\n", as_one_line(where + text).toUtf8().constData());
}

int report(const Failure &failure, int exit_status, const QString &where) {
  warn(failure.text, where);
  return exit_status;
}

} // namespace buttondriver::buttonctl
