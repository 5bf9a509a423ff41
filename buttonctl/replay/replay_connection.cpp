// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/replay/replay_connection.h"

#include <QNetworkProxy>

#include <sys/socket.h>

namespace buttondriver::buttonctl {

namespace {

constexpr int longest_close_ms = 1000;

} // namespace

ReplayConnection::ReplayConnection(const Endpoint &endpoint) : _endpoint(endpoint) {
  // The panel is near; a proxy meant for the web has no part in this.
  _socket.setProxy(QNetworkProxy::NoProxy);
  QObject::connect(&_socket, &QTcpSocket::connected, &_socket, [this] {
    _was_connected = true;
    _socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    _since_progress.start();
    shutDownWhenSent();
  });
  QObject::connect(&_socket, &QTcpSocket::readyRead, &_socket, [this] { _socket.readAll(); });
  QObject::connect(&_socket, &QTcpSocket::bytesWritten, &_socket, [this] {
    _since_progress.start();
    shutDownWhenSent();
  });
  QObject::connect(&_socket, &QTcpSocket::errorOccurred, &_socket, [this] { fail(); });
  _since_progress.start();
  _socket.connectToHost(_endpoint.host, _endpoint.port);
}

ReplayConnection::~ReplayConnection() { _socket.disconnect(&_socket); }

void ReplayConnection::send(const QByteArray &bytes) {
  if (!_outcome)
    return;
  if (_socket.bytesToWrite() == 0 && _was_connected)
    _since_progress.start();
  _socket.write(bytes);
  if (_was_connected)
    _socket.flush();
}

void ReplayConnection::end() {
  _is_ending = true;
  shutDownWhenSent();
}

Outcome<Done> ReplayConnection::outcome() const {
  if (!_outcome)
    return _outcome;
  if (!_is_shut_down && (!_was_connected || _socket.bytesToWrite() > 0) &&
      _since_progress.hasExpired(_endpoint.timeout_ms))
    return Failure{QStringLiteral("%1 %2 for %3 ms; allow more time with --timeout")
                       .arg(peer(), QLatin1String(_was_connected ? "takes no data" : "does not take the connection"),
                            QString::number(_endpoint.timeout_ms))};
  return Done{};
}

bool ReplayConnection::isClosed() const {
  return _is_shut_down &&
         (_socket.state() == QAbstractSocket::UnconnectedState || _since_progress.hasExpired(longest_close_ms));
}

void ReplayConnection::shutDownWhenSent() {
  if (!_is_ending || _is_shut_down || !_was_connected || _socket.bytesToWrite() > 0 ||
      _socket.state() != QAbstractSocket::ConnectedState)
    return;
  _is_shut_down = true;
  _since_progress.start();
  // Closing while an answer is still unread would make the system drop what has not arrived yet.
  ::shutdown(static_cast<int>(_socket.socketDescriptor()), SHUT_WR);
}

void ReplayConnection::fail() {
  if (!_outcome || (_is_shut_down && _socket.error() == QAbstractSocket::RemoteHostClosedError))
    return;
  if (_was_connected)
    _outcome =
        Failure{QStringLiteral("lost the connection to %1 before everything was sent; is the daemon still running?")
                    .arg(peer())};
  else if (_socket.error() == QAbstractSocket::ConnectionRefusedError)
    _outcome = Failure{QStringLiteral("%1 refuses the connection; is the daemon running there?").arg(peer())};
  else
    _outcome = Failure{
        QStringLiteral("cannot connect to %1 (%2); check --host and --port").arg(peer(), _socket.errorString())};
}

QString ReplayConnection::peer() const {
  return QStringLiteral("%1 port %2").arg(_endpoint.host, QString::number(_endpoint.port));
}

} // namespace buttondriver::buttonctl
