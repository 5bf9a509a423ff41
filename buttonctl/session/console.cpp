// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/session/console.h"

#include <cstdio>

namespace buttondriver::buttonctl {

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

void print(const QString &text) { std::fputs(text.toUtf8().constData(), stdout); }

void print_line(const QString &text) {
  std::fprintf(stdout, "%s\n", text.toUtf8().constData());
  std::fflush(stdout);
}

void warn(const QString &text, const QString &where) {
  std::fprintf(stderr, "buttonctl: %s\n", as_one_line(where + text).toUtf8().constData());
}

int report(const Failure &failure, int exit_status, const QString &where) {
  warn(failure.text, where);
  return exit_status;
}

} // namespace buttondriver::buttonctl
