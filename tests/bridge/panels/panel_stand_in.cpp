// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/panel_stand_in.h"

#include <QHostAddress>

#include <stdexcept>

namespace buttondriver::bridge::test {

namespace {

const QByteArray ping = QByteArray::fromHex("0000000c");
const QByteArray framed_answer = QByteArray::fromHex("0000000400000001");
constexpr int small_buffer = 64 * 1024;

} // namespace

PanelStandIn::PanelStandIn() {
  QObject::connect(&_server, &QTcpServer::newConnection, &_server, [this] { take(); });
  openAgain();
}

void PanelStandIn::openAgain() {
  if (!_server.listen(QHostAddress::LocalHost, _port))
    throw std::runtime_error("no port: " + _server.errorString().toStdString());
  _port = _server.serverPort();
}

void PanelStandIn::close() {
  hangUp();
  _server.close();
}

void PanelStandIn::take() {
  while (QTcpSocket *const socket = _server.nextPendingConnection()) {
    hangUp();
    ++_connections;
    if (closes_at_once) {
      delete socket;
      continue;
    }
    _socket = socket;
    _socket->setReadBufferSize(small_buffer);
    _socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, small_buffer);
    _cutter = std::make_unique<FrameCutter>(100 * 1024 * 1024);
    _messages.clear();
    QObject::connect(socket, &QTcpSocket::readyRead, &_server, [this] { read(); });
    QObject::connect(socket, &QTcpSocket::disconnected, &_server, [this, socket] {
      if (_socket == socket)
        _socket = nullptr;
      socket->deleteLater();
    });
    read();
  }
}

void PanelStandIn::read() {
  while (reads && _socket != nullptr && _socket->bytesAvailable() > 0)
    readOnce();
}

void PanelStandIn::readOnce() {
  for (const QByteArray &message : _cutter->take(_socket->readAll())) {
    if (message != ping) {
      _messages.push_back(message);
      continue;
    }
    ++_pings;
    _messages_before_last_ping = _messages.size();
    if (answers_pings)
      _socket->write(framed_answer);
  }
}

void PanelStandIn::readOn() {
  reads = true;
  read();
}

void PanelStandIn::write(const QByteArray &bytes) { _socket->write(bytes); }

void PanelStandIn::hangUp() {
  if (_socket == nullptr)
    return;
  QTcpSocket *const socket = _socket;
  _socket = nullptr;
  socket->abort();
}

} // namespace buttondriver::bridge::test
