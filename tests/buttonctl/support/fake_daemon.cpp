// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/support/fake_daemon.h"

#include <QHostAddress>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <utility>

namespace buttondriver::test {

namespace {

const QByteArray ping_frame = QByteArray::fromHex("000000040000000c");
constexpr int small_receive_buffer = 4096;

} // namespace

FakeDaemon::FakeDaemon() {
  QObject::connect(&_server, &QTcpServer::newConnection, &_server, [this] { accept(); });
  if (!_server.listen(QHostAddress::LocalHost, 0))
    throw std::runtime_error("no port to listen on");
}

void FakeDaemon::write(const QByteArray &bytes) {
  for (QTcpSocket *socket : std::as_const(_open)) {
    socket->write(bytes);
    socket->flush();
  }
}

void FakeDaemon::leave_unread() {
  _leave_unread = true;
  // Accepted sockets inherit it, so that a few megabytes are sure to be more than the system takes in.
  ::setsockopt(static_cast<int>(_server.socketDescriptor()), SOL_SOCKET, SO_RCVBUF, &small_receive_buffer,
               sizeof small_receive_buffer);
}

void FakeDaemon::read_on() {
  _leave_unread = false;
  const QList<QTcpSocket *> open = _open;
  for (QTcpSocket *socket : open) {
    socket->setReadBufferSize(0);
    take(*socket);
  }
}

void FakeDaemon::accept() {
  while (QTcpSocket *socket = _server.nextPendingConnection()) {
    ++_connections;
    _open.append(socket);
    QObject::connect(socket, &QTcpSocket::disconnected, socket, [this, socket] { _open.removeAll(socket); });
    if (_leave_unread)
      socket->setReadBufferSize(1);
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { take(*socket); });
    take(*socket);
  }
}

void FakeDaemon::take(QTcpSocket &socket) {
  if (socket.bytesAvailable() == 0)
    return;
  if (!_leave_unread) {
    const QByteArray bytes = socket.readAll();
    _received += bytes;
    _unanswered += bytes;
    while (!_answer.isEmpty() && _unanswered.contains(ping_frame)) {
      _unanswered.remove(0, _unanswered.indexOf(ping_frame) + ping_frame.size());
      socket.write(_answer);
    }
  }
  if (_action)
    _action(socket);
}

RefusingPort::RefusingPort() : _descriptor(::socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto *generic = reinterpret_cast<sockaddr *>(&address);
  if (::bind(_descriptor.get(), generic, size) != 0 || ::getsockname(_descriptor.get(), generic, &size) != 0)
    throw std::runtime_error("no port to keep");
  _port = ntohs(address.sin_port);
}

} // namespace buttondriver::test
