#include "logging/message_handler.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace buttondriver {

namespace {

void write_to_standard_error(QtMsgType, const QMessageLogContext &, const QString &message) {
  QByteArray line = message.toLocal8Bit();
  line += '\n';
  const char *rest = line.constData();
  auto left = static_cast<std::size_t>(line.size());
  while (left > 0) {
    const ssize_t written = ::write(STDERR_FILENO, rest, left);
    if (written < 0 && errno == EINTR)
      continue;
    if (written <= 0)
      return;
    rest += written;
    left -= static_cast<std::size_t>(written);
  }
}

} // namespace

void install_message_handler() {
  std::signal(SIGPIPE, SIG_IGN);
  qInstallMessageHandler(write_to_standard_error);
}

} // namespace buttondriver
