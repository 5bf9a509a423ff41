// SPDX-License-Identifier: Apache-2.0
#include "logging/log_line.h"

#include "logging/message_handler.h"

#include <QByteArray>
#include <QDebug>

#include <charconv>

namespace buttondriver {

namespace {

QString quoted(const QString &text) {
  QString result;
  QDebug(&result).nospace() << text;
  return result;
}

} // namespace

LogLine::~LogLine() {
  // What is not ASCII may have another encoding there.
  if (_is_from_qt || !is_message_handler_in_use()) {
    writeThroughQt();
  } else if (_long.empty()) {
    _usual[_size] = '\n';
    write_message_line({_usual, _size + 1});
  } else {
    _long += '\n';
    write_message_line(_long);
  }
}

void LogLine::writeThroughQt() const {
  const std::string_view line = _long.empty() ? std::string_view(_usual, _size) : _long;
  // A category of our own: the default one can be switched off from outside.
  qt_message_output(_level, QMessageLogContext(nullptr, 0, nullptr, "buttondriver"),
                    QString::fromUtf8(line.data(), static_cast<int>(line.size())));
}

LogLine &LogLine::appendNumber(qint64 number) {
  constexpr std::size_t longest = 21; // with its sign and the blank
  char digits[longest];
  const bool fits = longest < most_usual - _size;
  char *const begin = fits ? _usual + _size : digits;
  char *end = std::to_chars(begin, begin + longest, number).ptr;
  *end++ = ' ';
  const auto length = static_cast<std::size_t>(end - begin);
  if (fits)
    _size += length;
  else
    append({digits, length});
  return *this;
}

LogLine &LogLine::operator<<(const QString &text) {
  append(quoted(text) + QLatin1Char(' '));
  return *this;
}

LogLine &LogLine::operator<<(const QStringList &list) {
  QStringList items;
  for (const QString &item : list)
    items += quoted(item);
  append(QLatin1Char('(') + items.join(QLatin1String(", ")) + QLatin1String(") "));
  return *this;
}

LogLine &LogLine::operator<<(LineFeed) {
  append(std::string_view("\n"));
  return *this;
}

void LogLine::append(std::string_view text) {
  if (text.size() >= most_usual - _size)
    return appendLong(text);
  std::memcpy(_usual + _size, text.data(), text.size());
  _size += text.size();
}

void LogLine::append(const QString &text) {
  _is_from_qt = true;
  const QByteArray bytes = text.toUtf8();
  append({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

/// From now on the whole line is the long one.
void LogLine::appendLong(std::string_view text) {
  if (_long.empty())
    _long.assign(_usual, _size);
  _long += text;
  _size = most_usual; // leaves no room
}

} // namespace buttondriver
