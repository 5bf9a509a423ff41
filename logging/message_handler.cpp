#include "logging/message_handler.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace buttondriver {

namespace {

/// Whoever shares the descriptor may have made it non-blocking; half a line would spoil the next one.
bool becomes_writable() {
  constexpr int limit_ms = 1000;
  pollfd standard_error{STDERR_FILENO, POLLOUT, 0};
  return ::poll(&standard_error, 1, limit_ms) > 0;
}

void write_to_standard_error(QtMsgType, const QMessageLogContext &, const QString &message) {
  QByteArray line = message.toLocal8Bit();
  line += '\n';
  const char *rest = line.constData();
  auto left = static_cast<std::size_t>(line.size());
  while (left > 0) {
    const ssize_t written = ::write(STDERR_FILENO, rest, left);
    if (written < 0 && (errno == EINTR || (errno == EAGAIN && becomes_writable())))
      continue;
    if (written <= 0)
      return;
    rest += written;
    left -= static_cast<std::size_t>(written);
  }
}

} // namespace

void install_message_handler() {
  qInstallMessageHandler(write_to_standard_error);
}

} // namespace buttondriver
