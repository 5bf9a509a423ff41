// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

/// The bridge's own log: lines on standard error. Nothing that comes from a broker is logged as it came; control
/// characters are shown as numbers. State is process-wide and set before the first line.
namespace buttondriver::bridge {

enum class LogLevel {
  faults, ///< what somebody has to mend
  events, ///< and connections that come and go
  all,    ///< and every message that was wrong
};

/// Takes what Qt and the libraries have to tell into this log as well: warnings as faults, the rest with LogLevel::all.
void choose_log_level(LogLevel level);

/// "1 panel", "2 panels".
QByteArray counted(int number, const QByteArray &name);

void log_fault(const QByteArray &text);
void log_event(const QByteArray &text);
void log_detail(const QByteArray &text);

} // namespace buttondriver::bridge
