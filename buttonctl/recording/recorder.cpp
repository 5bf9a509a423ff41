// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/recorder.h"

#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"
#include "unixsignalhandler/unix_signal_handler.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QHostAddress>

#include <csignal>

namespace buttondriver::buttonctl {

namespace {

constexpr int longest_close_ms = 1000;
constexpr qint64 nanoseconds_per_microsecond = 1000;

} // namespace

Outcome<Done> Recorder::start() {
  const QHostAddress address(_request.listen.host);
  QObject::connect(&_server, &QTcpServer::newConnection, &_server, [this] { accept(); });
  if (!_server.listen(address, _request.listen.port))
    return Failure{QStringLiteral("cannot listen on %1 port %2: %3")
                       .arg(_request.listen.host, QString::number(_request.listen.port), _server.errorString())};
  const Outcome<Done> opened = _writer.open(_request.file);
  if (!opened)
    return opened;
  _elapsed.start();
  print_line(QStringLiteral("recording into %1: %2 port %3, for %4 port %5")
                 .arg(_request.file, _request.listen.host, QString::number(_server.serverPort()),
                      _request.endpoint.host, QString::number(_request.endpoint.port)));
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
        number, std::move(client), _request.endpoint,
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

int run_recorder(const Request &request) {
  // Made first, so that a signal that comes while the file is being made ends the program as it should.
  const unixsignalhandler::UnixSignalHandler signal_bridge;
  for (const int signal : {SIGINT, SIGTERM})
    unixsignalhandler::UnixSignalHandler::installSignalHandler(signal, [] { QCoreApplication::quit(); });
  Recorder recorder(request);
  if (const auto started = recorder.start(); !started)
    return report(started.failure(), exit_unreachable);
  QCoreApplication::exec();
  if (const auto finished = recorder.finish(); !finished)
    return report(finished.failure(), exit_unreachable);
  return exit_done;
}

} // namespace buttondriver::buttonctl
