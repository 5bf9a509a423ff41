// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/log.h"

#include "logging/standard_output.h"
#include "logging/visible_text.h"

#include <QMessageLogContext>
#include <QString>
#include <QtGlobal>

namespace buttondriver::bridge {

namespace {

LogLevel chosen_level = LogLevel::events;

void log(LogLevel level, const QByteArray &text) {
  if (level > chosen_level)
    return;
  const std::string visible = visible_text({text.constData(), static_cast<std::size_t>(text.size())});
  print_error("buttondriver-mqtt: %s\n", visible.c_str());
}

void take_from_qt(QtMsgType type, const QMessageLogContext &, const QString &text) {
  log(type == QtDebugMsg || type == QtInfoMsg ? LogLevel::all : LogLevel::faults, text.toUtf8().trimmed());
}

} // namespace

void choose_log_level(LogLevel level) {
  chosen_level = level;
  qInstallMessageHandler(take_from_qt);
}

QByteArray counted(int number, const QByteArray &name) {
  return QByteArray::number(number) + ' ' + name + (number == 1 ? "" : "s");
}

void log_fault(const QByteArray &text) { log(LogLevel::faults, text); }
void log_event(const QByteArray &text) { log(LogLevel::events, text); }
void log_detail(const QByteArray &text) { log(LogLevel::all, text); }

} // namespace buttondriver::bridge
