// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/line_splitter.h"

namespace buttondriver::buttonctl {

namespace {

constexpr QLatin1Char single_quote('\'');
constexpr QLatin1Char double_quote('"');
constexpr QLatin1Char backslash('\\');

} // namespace

Outcome<QStringList> split_line(const QString &line) {
  QStringList words;
  QString word;
  // A word may be empty, as '' is, so that its characters alone do not tell whether there is one.
  bool in_word = false;
  QChar quote;
  for (int i = 0; i < line.size(); ++i) {
    const QChar character = line.at(i);
    const bool last = i + 1 == line.size();
    if (character == backslash && quote != single_quote) {
      if (last)
        return Failure{QStringLiteral("nothing follows the backslash at the end of the line")};
      const QChar next = line.at(i + 1);
      if (quote == double_quote && next != double_quote && next != backslash) {
        word += character;
        continue;
      }
      word += next;
      in_word = true;
      ++i;
    } else if (!quote.isNull()) {
      if (character == quote)
        quote = QChar();
      else
        word += character;
    } else if (character == single_quote || character == double_quote) {
      quote = character;
      in_word = true;
    } else if (character.isSpace()) {
      if (in_word)
        words += word;
      word.clear();
      in_word = false;
    } else if (character == QLatin1Char('#') && !in_word) {
      break;
    } else {
      word += character;
      in_word = true;
    }
  }
  if (!quote.isNull())
    return Failure{QStringLiteral("the quote %1 is not closed").arg(quote)};
  if (in_word)
    words += word;
  return words;
}

} // namespace buttondriver::buttonctl
