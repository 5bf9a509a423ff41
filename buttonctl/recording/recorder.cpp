// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/recorder.h"

#include "buttonctl/session/console.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QHostAddress>

namespace buttondriver::buttonctl {

namespace {

constexpr int longest_close_ms = 1000;
constexpr qint64 nanoseconds_per_microsecond = 1000;

} // namespace

Outcome<Done> Recorder::start() {
  const QHostAddress address(_plan.listen.host);
  QObject::connect(&_server, &QTcpServer::newConnection, &_server, [this] { accept(); });
  if (!_server.listen(address, _plan.listen.port))
    return Failure{QStringLiteral("cannot listen on %1 port %2: %3")
                       .arg(_plan.listen.host, QString::number(_plan.listen.port), _server.errorString())};
  Outcome<Done> opened = _writer.open(_plan.file);
  if (!opened)
    return opened;
  _elapsed.start();
  print_line(QStringLiteral("recording into %1: %2 port %3, for %4 port %5")
                 .arg(_plan.file, _plan.listen.host, QString::number(_server.serverPort()), _plan.endpoint.host,
                      QString::number(_plan.endpoint.port)));
  return Done{};
}

Outcome<Done> Recorder::finish() {
  _server.close();
  const QDeadlineTimer limit(longest_close_ms);
  for (const auto &[number, connection] : _connections)
    connection->close(limit);
  _connections.clear();
  print_line(QStringLiteral("recorded %1 frames of %2 connections").arg(_frames).arg(_accepted));
  return _written;
}

void Recorder::accept() {
  while (QTcpSocket *socket = _server.nextPendingConnection()) {
    std::unique_ptr<QTcpSocket> client(socket);
    client->setParent(nullptr);
    const int number = ++_accepted;
    _connections[number] = std::make_unique<RecordedConnection>(
        number, std::move(client), _plan.endpoint,
        [this](int connection, const QByteArray &frame) { write(connection, frame); },
        [this](int connection) {
          // The object is in the midst of a call; it goes when that has returned.
          QMetaObject::invokeMethod(
              &_server, [this, connection] { _connections.erase(connection); }, Qt::QueuedConnection);
        });
  }
}

void Recorder::write(int connection, const QByteArray &frame) {
  if (!_written)
    return;
  _written = _writer.write({_elapsed.nsecsElapsed() / nanoseconds_per_microsecond, connection, frame});
  if (_written)
    ++_frames;
  else
    QCoreApplication::quit();
}

} // namespace buttondriver::buttonctl
