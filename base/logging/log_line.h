// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace buttondriver {

/// Stands for the line feed that some texts carry in themselves, in front of the one that ends every line of the log.
struct LineFeed {};
inline constexpr LineFeed line_feed{};

/// One line for the Qt message channel, sent when the object goes out of scope:
///
///     debug_line() << "Button " << id << " set to state " << state;
///
/// Every item is followed by one blank, the last one too, whatever the Qt in use; readers of the log rely on it.
/// The one exception is a line_feed. Texts come as they are, QString in double quotes, lists as ("a", "b").
class LogLine {
public:
  explicit LogLine(QtMsgType level) : _level(level) {}
  ~LogLine();
  LogLine(const LogLine &) = delete;
  LogLine &operator=(const LogLine &) = delete;

  LogLine &operator<<(const char *text);
  LogLine &operator<<(int number);
  LogLine &operator<<(unsigned number);
  LogLine &operator<<(qint64 number);
  LogLine &operator<<(const QString &text);
  LogLine &operator<<(const QStringList &list);
  LogLine &operator<<(LineFeed);

private:
  QtMsgType _level;
  QString _text;
};

/// A line of a normal event.
inline LogLine debug_line() { return LogLine(QtDebugMsg); }
/// A line of a fault in what a client sent or in how the daemon was called.
inline LogLine critical_line() { return LogLine(QtCriticalMsg); }

} // namespace buttondriver
