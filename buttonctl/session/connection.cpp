// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/session/connection.h"

#include <QElapsedTimer>
#include <QNetworkProxy>

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <utility>

namespace buttondriver::buttonctl {

namespace {

constexpr int longest_close_ms = 1000;
constexpr double nanoseconds_per_millisecond = 1e6;
/// A framed BMS_PingReply.
constexpr char ping_answer[] = "\0\0\0\4\0\0\0\1";
constexpr int ping_answer_size = sizeof ping_answer - 1;

bool has_error(int descriptor) {
  int error = 0;
  socklen_t size = sizeof error;
  return ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) != 0 || error != 0;
}

/// Reads until the peer closes; false when it has cut the connection off instead.
bool drain(int descriptor, int limit_ms) {
  QElapsedTimer elapsed;
  elapsed.start();
  for (;;) {
    const int left = limit_ms - static_cast<int>(elapsed.elapsed());
    pollfd watched = {descriptor, POLLIN, 0};
    const int ready = left > 0 ? ::poll(&watched, 1, left) : 0;
    if (ready == 0)
      return true;
    if (ready < 0) {
      if (errno == EINTR)
        continue;
      return true;
    }
    if (has_error(descriptor))
      return false;
    std::array<char, 4096> unread;
    const ssize_t got = ::recv(descriptor, unread.data(), unread.size(), MSG_DONTWAIT);
    if (got == 0)
      return true;
    if (got < 0 && errno != EAGAIN && errno != EINTR)
      return false;
  }
}

} // namespace

Connection::Connection(Endpoint endpoint) : _endpoint(std::move(endpoint)) {
  // The panel is near; a proxy meant for the web has no part in this.
  _socket.setProxy(QNetworkProxy::NoProxy);
}

Outcome<Done> Connection::open() {
  _socket.connectToHost(_endpoint.host, _endpoint.port);
  if (!_socket.waitForConnected(_endpoint.timeout_ms))
    return connectionFailure();
  _socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
  return Done{};
}

Outcome<Done> Connection::send(const QByteArray &bytes) {
  if (_socket.write(bytes) != bytes.size())
    return lost();
  while (_socket.bytesToWrite() > 0) {
    if (_socket.waitForBytesWritten(_endpoint.timeout_ms))
      continue;
    if (_socket.state() != QAbstractSocket::ConnectedState)
      return lost();
    return Failure{QStringLiteral("%1 takes no data for %2 ms; allow more time with --timeout")
                       .arg(peer(), QString::number(_endpoint.timeout_ms))};
  }
  return Done{};
}

Outcome<double> Connection::ping(const QByteArray &bytes) {
  // Answers to pings that were sent as raw messages do not count.
  _socket.readAll();
  QElapsedTimer elapsed;
  elapsed.start();
  const Outcome<Done> sent = send(bytes);
  if (!sent)
    return sent.failure();
  while (_socket.bytesAvailable() < ping_answer_size) {
    const int left = _endpoint.timeout_ms - static_cast<int>(elapsed.elapsed());
    if (left > 0 && _socket.waitForReadyRead(left))
      continue;
    if (_socket.state() != QAbstractSocket::ConnectedState)
      return Failure{QStringLiteral("%1 closed the connection instead of answering; is that the daemon?").arg(peer())};
    return Failure{
        QStringLiteral("no answer from %1 within %2 ms; allow more time with --timeout, or restart the daemon")
            .arg(peer(), QString::number(_endpoint.timeout_ms))};
  }
  const auto nanoseconds = static_cast<double>(elapsed.nsecsElapsed());
  const QByteArray answer = _socket.read(ping_answer_size);
  if (answer != QByteArray(ping_answer, ping_answer_size))
    return Failure{QStringLiteral("%1 answers a ping with %2, which is no ping reply; is that the daemon?")
                       .arg(peer(), QString::fromLatin1(answer.toHex(' ')))};
  return nanoseconds / nanoseconds_per_millisecond;
}

Outcome<Done> Connection::close() {
  const auto descriptor = static_cast<int>(_socket.socketDescriptor());
  if (descriptor < 0)
    return lost();
  // Closing while an answer is still unread would make the system drop what has not arrived yet.
  const bool arrived = !has_error(descriptor) && ::shutdown(descriptor, SHUT_WR) == 0 &&
                       drain(descriptor, std::min(_endpoint.timeout_ms, longest_close_ms));
  _socket.abort();
  if (!arrived)
    return lost();
  return Done{};
}

QString Connection::peer() const {
  return QStringLiteral("%1 port %2").arg(_endpoint.host, QString::number(_endpoint.port));
}

Failure Connection::connectionFailure() const {
  switch (_socket.error()) {
  case QAbstractSocket::ConnectionRefusedError:
    return Failure{QStringLiteral("%1 refuses the connection; is the daemon running there?").arg(peer())};
  case QAbstractSocket::HostNotFoundError:
    return Failure{QStringLiteral("the host '%1' is not known; check --host").arg(_endpoint.host)};
  case QAbstractSocket::SocketTimeoutError:
    return Failure{QStringLiteral("no connection to %1 within %2 ms; check --host and --port")
                       .arg(peer(), QString::number(_endpoint.timeout_ms))};
  default:
    return Failure{
        QStringLiteral("cannot connect to %1 (%2); check --host and --port").arg(peer(), _socket.errorString())};
  }
}

Failure Connection::lost() const {
  return Failure{
      QStringLiteral("lost the connection to %1 before everything was sent; is the daemon still running?").arg(peer())};
}

} // namespace buttondriver::buttonctl
