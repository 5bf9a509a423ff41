// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace buttondriver {

/// Stands for the line feed that some texts carry in themselves, in front of the one that ends every line of the log.
struct LineFeed {};
inline constexpr LineFeed line_feed{};

/// One line for the Qt message channel, sent when the object goes out of scope:
///
///     debug_line() << "Button " << id << " set to state " << state;
///
/// Every item is followed by one blank, the last one too, whatever the Qt in use; readers of the log rely on it.
/// The one exception is a line_feed. Texts are UTF-8 and come as they are, QString in double quotes, lists as
/// ("a", "b").
///
/// A line that our own message handler would get is written without a way through Qt.
class LogLine {
public:
  explicit LogLine(QtMsgType level) : _level(level) {}
  ~LogLine();
  LogLine(const LogLine &) = delete;
  LogLine &operator=(const LogLine &) = delete;

  // Here, so that the length of a literal is known when it is compiled.
  LogLine &operator<<(const char *text) {
    const std::size_t size = std::strlen(text);
    if (size + 1 >= most_usual - _size) {
      appendLong({text, size});
      appendLong(" ");
      return *this;
    }
    std::memcpy(_usual + _size, text, size);
    _size += size;
    _usual[_size++] = ' ';
    return *this;
  }
  LogLine &operator<<(int number) { return *this << qint64{number}; }
  LogLine &operator<<(unsigned number) { return *this << qint64{number}; }
  LogLine &operator<<(qint64 number) {
    // Most of them: opcodes, sizes, ids.
    constexpr std::size_t longest = 3; // with the blank
    if (number < 0 || number > 99 || longest >= most_usual - _size)
      return appendNumber(number);
    if (number > 9)
      _usual[_size++] = static_cast<char>('0' + number / 10);
    _usual[_size++] = static_cast<char>('0' + number % 10);
    _usual[_size++] = ' ';
    return *this;
  }
  LogLine &operator<<(const QString &text);
  LogLine &operator<<(const QStringList &list);
  LogLine &operator<<(LineFeed);

private:
  static constexpr std::size_t most_usual = 240; // one of them stays free for the line feed at the end

  LogLine &appendNumber(qint64 number);
  void append(std::string_view text);
  void append(const QString &text);
  void appendLong(std::string_view text);
  void writeThroughQt() const;

  const QtMsgType _level;
  bool _is_from_qt = false; // has texts of any language
  std::size_t _size = 0;
  char _usual[most_usual];
  std::string _long; // all of the line that does not fit
};

/// A line of a normal event.
inline LogLine debug_line() { return LogLine(QtDebugMsg); }
/// A line of a fault in what a client sent or in how the daemon was called.
inline LogLine critical_line() { return LogLine(QtCriticalMsg); }

} // namespace buttondriver
