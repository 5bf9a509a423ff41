// SPDX-License-Identifier: Apache-2.0
#include "logging/log_line.h"

#include <QDebug>

namespace buttondriver {

namespace {

QString quoted(const QString &text) {
  QString result;
  QDebug(&result).nospace() << text;
  return result;
}

} // namespace

// A category of our own: the default one can be switched off from outside.
LogLine::~LogLine() { qt_message_output(_level, QMessageLogContext(nullptr, 0, nullptr, "buttondriver"), _text); }

LogLine &LogLine::operator<<(const char *text) {
  _text += QLatin1String(text);
  _text += QLatin1Char(' ');
  return *this;
}

LogLine &LogLine::operator<<(int number) { return *this << qint64{number}; }

LogLine &LogLine::operator<<(unsigned number) { return *this << qint64{number}; }

LogLine &LogLine::operator<<(qint64 number) {
  _text += QString::number(number);
  _text += QLatin1Char(' ');
  return *this;
}

LogLine &LogLine::operator<<(const QString &text) {
  _text += quoted(text);
  _text += QLatin1Char(' ');
  return *this;
}

LogLine &LogLine::operator<<(const QStringList &list) {
  QStringList items;
  for (const QString &item : list)
    items += quoted(item);
  _text += QLatin1Char('(') + items.join(QLatin1String(", ")) + QLatin1String(") ");
  return *this;
}

LogLine &LogLine::operator<<(LineFeed) {
  _text += QLatin1Char('\n');
  return *this;
}

} // namespace buttondriver
