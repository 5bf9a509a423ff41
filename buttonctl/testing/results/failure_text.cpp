// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/testing/results/failure_text.h"

namespace buttondriver::buttonctl {

QString failure_text(const QString &file, const QByteArray &errors) {
  static const QString program = QStringLiteral("buttonctl: ");
  QString text = last_line(errors);
  if (text.startsWith(program))
    text.remove(0, program.size());
  return with_line(file, text);
}

QString with_line(const QString &file, const QString &text) {
  const QString place = file + QLatin1Char(':');
  if (!text.startsWith(place))
    return text;
  return QStringLiteral("line ") + text.mid(place.size());
}

QString last_line(const QByteArray &errors) {
  const QString text = QString::fromUtf8(errors).trimmed();
  if (text.isEmpty())
    return QStringLiteral("it says nothing");
  return text.mid(text.lastIndexOf(QLatin1Char('\n')) + 1);
}

} // namespace buttondriver::buttonctl
