// SPDX-License-Identifier: Apache-2.0
#include "logging/message_handler.h"

#include "logging/log_channel.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <unistd.h>

namespace buttondriver {

namespace {

void write_to_standard_error(QtMsgType, const QMessageLogContext &, const QString &message) {
  static LogChannel standard_error(STDERR_FILENO);
  const QByteArray line = message.toLocal8Bit() + '\n';
  standard_error.write({line.constData(), static_cast<std::size_t>(line.size())});
}

} // namespace

void install_message_handler() { qInstallMessageHandler(write_to_standard_error); }

} // namespace buttondriver
