// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace buttondriver::buttonctl {

/// What one check of the doctor has found.
struct Finding {
  QString name; ///< of what was checked, one word
  QString text; ///< what is there, or what is wrong
  QString fix;  ///< a shell command line that mends it; empty when nothing is wrong

  bool is_note = false; ///< neither good nor bad, and worth knowing

  bool isFault() const { return !fix.isEmpty(); }
};

/// Something worth knowing that is no fault.
inline Finding note(const QString &name, const QString &text) { return {name, text, {}, true}; }

/// `text` as one word of a shell command line.
inline QString shell_word(const QString &text) {
  bool is_plain = !text.isEmpty();
  for (const QChar character : text)
    is_plain = is_plain && (character.isLetterOrNumber() || QStringLiteral("/._-+:,%@=").contains(character));
  if (is_plain)
    return text;
  return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

/// A command line that opens the file in the user's editor, and what is to be written there. `place` is empty, or an
/// argument such as "+3" for a line.
inline QString edit(const QString &file, const QString &lines, const QString &place = QString()) {
  return QStringLiteral("${EDITOR:-vi} %1%2    # %3")
      .arg(place.isEmpty() ? QString() : place + QLatin1Char(' '), shell_word(file), lines);
}

} // namespace buttondriver::buttonctl
