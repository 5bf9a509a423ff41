// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/recorded_connection.h"

#include "buttonctl/session/console.h"

#include <QNetworkProxy>

#include <algorithm>
#include <sys/socket.h>
#include <utility>

namespace buttondriver::buttonctl {

namespace {

/// A frame with a picture for a screen is about as large.
constexpr qint64 most_waiting = 64 * 1024;

} // namespace

RecordedConnection::RecordedConnection(int number, std::unique_ptr<QTcpSocket> client, const Endpoint &daemon,
                                       FrameCallback frame, EndCallback end)
    : _number(number), _endpoint(daemon), _frame(std::move(frame)), _end(std::move(end)), _client(std::move(client)) {
  for (QTcpSocket *socket : {_client.get(), &_daemon}) {
    socket->setReadBufferSize(most_waiting);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  }
  // The panel is near; a proxy meant for the web has no part in this.
  _daemon.setProxy(QNetworkProxy::NoProxy);
  QObject::connect(_client.get(), &QTcpSocket::readyRead, &_daemon, [this] { passRequests(); });
  QObject::connect(_client.get(), &QTcpSocket::bytesWritten, &_daemon, [this] { passAnswers(); });
  QObject::connect(_client.get(), &QTcpSocket::disconnected, &_daemon, [this] { clientClosed(); });
  QObject::connect(&_daemon, &QTcpSocket::connected, &_daemon, [this] {
    _connection_limit.stop();
    _is_connected = true;
    _daemon.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    passRequests();
  });
  QObject::connect(&_daemon, &QTcpSocket::readyRead, &_daemon, [this] { passAnswers(); });
  QObject::connect(&_daemon, &QTcpSocket::bytesWritten, &_daemon, [this] { passRequests(); });
  QObject::connect(&_daemon, &QTcpSocket::disconnected, &_daemon, [this] { daemonClosed(); });
  QObject::connect(&_daemon, &QTcpSocket::errorOccurred, &_daemon, [this] {
    if (!_is_connected)
      failToConnect();
  });
  QObject::connect(&_connection_limit, &QTimer::timeout, &_daemon, [this] { failToConnect(); });
  _connection_limit.setSingleShot(true);
  _connection_limit.start(_endpoint.timeout_ms);
  _daemon.connectToHost(_endpoint.host, _endpoint.port);
}

RecordedConnection::~RecordedConnection() {
  _client->disconnect(&_daemon);
  _daemon.disconnect(&_daemon);
}

void RecordedConnection::close(QDeadlineTimer limit) {
  const auto left_ms = [&limit] { return static_cast<int>(limit.remainingTime()); };
  if (!_is_connected)
    return;
  // What the client sends from now on is neither reported nor passed on.
  _client->disconnect(&_daemon);
  while (_daemon.bytesToWrite() > 0 && _daemon.waitForBytesWritten(left_ms())) {
  }
  if (_daemon.state() != QAbstractSocket::ConnectedState)
    return;
  _daemon.disconnect(&_daemon);
  _daemon.setReadBufferSize(0);
  ::shutdown(static_cast<int>(_daemon.socketDescriptor()), SHUT_WR);
  _daemon.waitForDisconnected(left_ms());
}

void RecordedConnection::passRequests() {
  if (!_is_connected)
    return;
  while (_client->bytesAvailable() > 0 && _daemon.bytesToWrite() < most_waiting &&
         _daemon.state() == QAbstractSocket::ConnectedState) {
    const QByteArray bytes = _client->read(most_waiting);
    reportFrames(bytes);
    _daemon.write(bytes);
  }
  if (_client->state() == QAbstractSocket::UnconnectedState)
    clientClosed();
}

void RecordedConnection::passAnswers() {
  while (_daemon.bytesAvailable() > 0 && _client->state() == QAbstractSocket::ConnectedState &&
         _client->bytesToWrite() < most_waiting)
    _client->write(_daemon.read(most_waiting));
  // Nobody wants these any more, but unread they would keep the daemon's end of the stream from being seen.
  if (_client->state() == QAbstractSocket::UnconnectedState)
    _daemon.readAll();
  if (_is_connected && _daemon.state() == QAbstractSocket::UnconnectedState)
    daemonClosed();
}

void RecordedConnection::reportFrames(const QByteArray &bytes) {
  const bool had_lost_track = _splitter.hasLostTrack();
  for (const QByteArray &frame : _splitter.take(bytes))
    _frame(_number, frame);
  if (_splitter.hasLostTrack() && !had_lost_track)
    warn(
        QStringLiteral("connection %1: a frame says that it has more than %2 bytes; what follows on this connection is "
                       "passed on but not recorded")
            .arg(_number)
            .arg(FrameSplitter::longest_message));
}

void RecordedConnection::failToConnect() {
  _connection_limit.stop();
  warn(QStringLiteral("connection %1: cannot connect to %2 port %3 (%4); is the daemon running there?")
           .arg(QString::number(_number), _endpoint.host, QString::number(_endpoint.port), _daemon.errorString()));
  _daemon.abort();
  _client->abort();
  endWhenBothAreClosed();
}

void RecordedConnection::clientClosed() {
  if (!_is_connected) {
    // What the client sent before it went still goes to the daemon, once that can be reached.
    return;
  }
  if (_client->bytesAvailable() > 0 && _daemon.state() == QAbstractSocket::ConnectedState) {
    if (_daemon.bytesToWrite() < most_waiting)
      passRequests();
    return;
  }
  if (_daemon.state() == QAbstractSocket::ConnectedState) {
    // Closing while an answer is still unread would make the system drop what has not arrived yet; so the daemon
    // learns of the end, and closes in its turn.
    if (_daemon.bytesToWrite() == 0)
      ::shutdown(static_cast<int>(_daemon.socketDescriptor()), SHUT_WR);
    passAnswers();
    return;
  }
  endWhenBothAreClosed();
}

void RecordedConnection::daemonClosed() {
  if (_client->state() == QAbstractSocket::ConnectedState) {
    if (_daemon.bytesAvailable() > 0)
      return;
    _client->disconnectFromHost();
  }
  endWhenBothAreClosed();
}

void RecordedConnection::endWhenBothAreClosed() {
  if (_has_ended || _client->state() != QAbstractSocket::UnconnectedState ||
      _daemon.state() != QAbstractSocket::UnconnectedState)
    return;
  _has_ended = true;
  if (_splitter.unfinished() > 0)
    warn(QStringLiteral("connection %1 ended in the middle of a frame; its last %2 bytes are not in the recording")
             .arg(_number)
             .arg(_splitter.unfinished()));
  _end(_number);
}

} // namespace buttondriver::buttonctl
