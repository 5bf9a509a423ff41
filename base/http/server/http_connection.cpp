// SPDX-License-Identifier: Apache-2.0
#include "http/server/http_connection.h"

#include <sys/socket.h>

namespace buttondriver {

namespace {

/// A request as large as it may be, and one byte by which one is seen to be larger.
constexpr qint64 most_buffered = AccessRule::largest_head + AccessRule::largest_body + 1;

/// Of the kernel, in each direction.
constexpr int page_buffer = 128 * 1024;

} // namespace

HttpConnection::HttpConnection(QTcpSocket *socket, const AccessRule &rule, const HttpLimits &limits)
    : QObject(socket), _socket(socket), _rule(rule), _limits(limits) {
  _socket->setReadBufferSize(most_buffered);
  // Small updates are not to wait for one another.
  _socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  connect(_socket, &QTcpSocket::readyRead, this, &HttpConnection::read);
  _end = connect(_socket, &QTcpSocket::disconnected, _socket, &QObject::deleteLater);
  connect(&_timer, &QTimer::timeout, this, &HttpConnection::giveUp);
  _timer.setSingleShot(true);
  _timer.start(_limits.request_ms);
}

void HttpConnection::read() {
  if (_state == State::refused) {
    _socket->readAll();
    return;
  }
  if (_state != State::receiving) {
    // There is one request to a connection: nobody has looked at what comes after it.
    _socket->abort();
    return;
  }
  const QByteArray bytes = _socket->peek(most_buffered);
  const int end = head_end(bytes.left(AccessRule::largest_head));
  if (end < 0) {
    if (bytes.size() >= AccessRule::largest_head)
      refuse({431, "too large a head"});
    return;
  }
  const auto content = read_head(bytes.left(end));
  if (const auto *refused = std::get_if<RefusedRequest>(&content))
    return refuse(*refused);
  const auto &head = std::get<RequestHead>(content);
  if (const auto refused = _rule.refusal(head))
    return refuse(*refused);
  const qint64 size = end + head.body_size;
  if (bytes.size() > size)
    return refuse({400, "bytes after the request"});
  if (bytes.size() < size)
    return;
  if (head.is_websocket)
    return letGo();
  _socket->skip(size);
  take(head);
}

void HttpConnection::take(const RequestHead &head) {
  _state = State::answering;
  _wants_body = head.method != "HEAD";
  _timer.start(_limits.answer_ms);
  emit requested(head);
}

void HttpConnection::letGo() {
  _state = State::handed_on;
  _timer.stop();
  _socket->disconnect(this);
  disconnect(_end);
  _socket->setReadBufferSize(0);
  // So much comes in before it is looked at, and so much is taken off before it is known that nobody reads it.
  _socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, page_buffer);
  _socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, page_buffer);
  emit upgradeRequested(_socket);
  deleteLater();
}

void HttpConnection::answer(const HttpAnswer &answer) {
  _state = State::delivering;
  connect(_socket, &QTcpSocket::bytesWritten, this, [this] {
    if (_socket->bytesToWrite() == 0)
      _socket->disconnectFromHost();
  });
  answer.writeTo(*_socket, _wants_body);
}

void HttpConnection::refuse(const RefusedRequest &refused) {
  _state = State::refused;
  connect(_socket, &QTcpSocket::bytesWritten, this, [this] {
    if (_socket->bytesToWrite() == 0)
      ::shutdown(static_cast<int>(_socket->socketDescriptor()), SHUT_WR);
  });
  HttpAnswer::fault(refused.status, refused.reason).writeTo(*_socket);
  // The rest of the request is read and dropped: closing over unread bytes would take the answer back.
  _socket->readAll();
  _timer.start(_limits.farewell_ms);
}

void HttpConnection::giveUp() {
  if (_state == State::receiving)
    refuse({408, "the request took too long"});
  else
    _socket->abort();
}

} // namespace buttondriver
