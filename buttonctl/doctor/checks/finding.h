// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace buttondriver::buttonctl {

/// What one check of the doctor has found.
struct Finding {
  QString name; ///< of what was checked, one word
  QString text; ///< what is there, or what is wrong
  QString fix;  ///< a shell command line that mends it; empty when nothing is wrong

  bool isFault() const { return !fix.isEmpty(); }
};

/// `text` as one word of a shell command line.
inline QString shell_word(const QString &text) {
  bool is_plain = !text.isEmpty();
  for (const QChar character : text)
    is_plain = is_plain && (character.isLetterOrNumber() || QStringLiteral("/._-+:,%@=").contains(character));
  if (is_plain)
    return text;
  return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

} // namespace buttondriver::buttonctl
