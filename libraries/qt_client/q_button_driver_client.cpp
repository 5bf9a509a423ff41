// SPDX-License-Identifier: Apache-2.0
#include "qt_client/q_button_driver_client.h"

#include "protocol/frames.h"
#include "protocol/framing.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QThread>

namespace buttondriver {

namespace {

constexpr qint64 highest_unread_size = 64 * 1024;
constexpr unsigned long retry_pause_ms = 200;

} // namespace

QButtonDriverClient::QButtonDriverClient()
    : QButtonDriverClient(QHostAddress(QHostAddress::LocalHost).toString(), DEFAULT_PORT) {}

QButtonDriverClient::QButtonDriverClient(const QString &host, quint16 port) : _host(host), _port(port) {
  qRegisterMetaType<vector<QByteArray>>("vector<QByteArray>");
  connect(&_socket, &QTcpSocket::connected, this, &QButtonDriverClient::connected);
  // Queued: nobody can be there yet who hears of a connection that is up before the constructor ends, and nobody is
  // called back from within what he calls.
  connect(
      &_socket, &QTcpSocket::connected, this, [this] { emit connectionChanged(true); }, Qt::QueuedConnection);
  connect(
      &_socket, &QTcpSocket::disconnected, this, [this] { emit connectionChanged(false); }, Qt::QueuedConnection);
  // Unread answers would pile up without bound.
  _socket.setReadBufferSize(highest_unread_size);
  connect(&_socket, &QTcpSocket::readyRead, &_socket, [this] { _socket.readAll(); });
  connectToServer();
}

bool QButtonDriverClient::waitForConnected(int msecs) {
  connectToServer();
  QElapsedTimer timer;
  timer.start();
  for (qint64 remaining = msecs; remaining >= 1; remaining = msecs - timer.elapsed()) {
    connectToServer();
    if (isConnected() || _socket.waitForConnected(static_cast<int>(remaining)))
      return true;
    QThread::msleep(retry_pause_ms);
  }
  return false;
}

bool QButtonDriverClient::waitForBytesWritten(int msecs) { return _socket.waitForBytesWritten(msecs); }

void QButtonDriverClient::msg(QByteArray message) { send(&message, 1); }

void QButtonDriverClient::msg(vector<QByteArray> messages) { send(messages.data(), messages.size()); }

void QButtonDriverClient::connected() {}

void QButtonDriverClient::connectToServer() {
  if (_socket.state() == QAbstractSocket::UnconnectedState)
    _socket.connectToHost(_host, _port);
}

void QButtonDriverClient::send(const QByteArray *messages, std::size_t count) {
  if (count > 0 && isFull()) {
    emit refused(static_cast<int>(count));
    return;
  }
  // A server that is not there refuses at once, so it takes the retries to give one that is about to start its second.
  if (!isConnected() && !waitForConnected(_connect_wait)) {
    if (count > 0)
      emit dropped(static_cast<int>(count));
    return;
  }
  for (std::size_t i = 0; i < count; ++i)
    _socket.write(framed(messages[i]));
}

bool QButtonDriverClient::isFull() {
  // A program that sends much in one go has not been in its event loop since.
  if (_socket.bytesToWrite() > _send_limit)
    _socket.flush();
  return _socket.bytesToWrite() > _send_limit;
}

} // namespace buttondriver
