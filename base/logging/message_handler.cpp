// SPDX-License-Identifier: Apache-2.0
#include "logging/message_handler.h"

#include "logging/channels/log_channels.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <atomic>

namespace buttondriver {

namespace {

/// False as long as nobody asked for our handler, as in programs that only use the libraries.
std::atomic<bool> may_be_in_use{false};

void write_to_standard_error(QtMsgType level, const QMessageLogContext &, const QString &message) {
  const QByteArray line = message.toLocal8Bit() + '\n';
  write_message_line({line.constData(), static_cast<std::size_t>(line.size())});
  // Nothing comes after this message.
  if (level == QtFatalMsg)
    LogChannels::ofProcess().stopGathering();
}

} // namespace

void install_message_handler() {
  qInstallMessageHandler(write_to_standard_error);
  may_be_in_use = true;
}

bool is_message_handler_in_use() {
  if (!may_be_in_use.load(std::memory_order_relaxed))
    return false;
  // Qt only tells when a handler is installed; installing what is there changes nothing.
  const QtMessageHandler found = qInstallMessageHandler(write_to_standard_error);
  if (found == write_to_standard_error)
    return true;
  may_be_in_use = false;
  qInstallMessageHandler(found);
  return false;
}

void write_message_line(std::string_view line) { LogChannels::ofProcess().write(LogChannels::Channel::error, line); }

} // namespace buttondriver
