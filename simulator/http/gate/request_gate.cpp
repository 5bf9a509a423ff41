// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/gate/request_gate.h"

#include "simulator/http/gate/http_answer.h"

#include <QTcpSocket>

#include <sys/socket.h>

namespace buttondriver::simulator {

namespace {

/// For a request to arrive.
constexpr int request_limit_ms = 10'000;
/// For an answer, behind all work that it waits for, to be made and taken.
constexpr int answer_limit_ms = 60'000;
/// For a client to take the answer that refuses its request, and to hang up.
constexpr int farewell_limit_ms = 2'000;
/// A request as large as it may be, and one byte by which one is seen to be larger.
constexpr qint64 most_buffered = AccessRule::largest_head + AccessRule::largest_body + 1;

} // namespace

RequestGate::RequestGate(QTcpSocket *socket, const AccessRule &rule) : QObject(socket), _socket(socket), _rule(rule) {
  _socket->setReadBufferSize(most_buffered);
  // Small updates are not to wait for one another.
  _socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  connect(_socket, &QTcpSocket::readyRead, this, &RequestGate::read);
  _end = connect(_socket, &QTcpSocket::disconnected, _socket, &QObject::deleteLater);
  connect(&_limit, &QTimer::timeout, this, [this] {
    if (_state == State::receiving)
      refuse({408, "the request took too long"});
    else
      _socket->abort();
  });
  _limit.setSingleShot(true);
  _limit.start(request_limit_ms);
}

void RequestGate::read() {
  if (_state == State::refused) {
    _socket->readAll();
    return;
  }
  if (_state == State::handing_on)
    return;
  if (_state == State::answering) {
    // There is one request to a connection: nobody has looked at what comes behind it.
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
  RequestHead head;
  RefusedRequest refused;
  if (!read_head(bytes.left(end), &head, &refused) || !_rule.allows(head, &refused))
    return refuse(refused);
  const qint64 size = end + head.body_size;
  if (bytes.size() > size)
    return refuse({400, "bytes behind the request"});
  if (bytes.size() == size)
    pass(head);
}

void RequestGate::pass(const RequestHead &head) {
  _state = State::handing_on;
  if (head.is_websocket) {
    _limit.stop();
    _socket->disconnect(this);
    disconnect(_end);
    _socket->setReadBufferSize(0);
  } else {
    _limit.start(answer_limit_ms);
    connect(_socket, &QTcpSocket::bytesWritten, this, [this] {
      if (_socket->bytesToWrite() == 0)
        _socket->disconnectFromHost();
    });
  }
  emit passed();
  // For the newcomer, who has missed it.
  emit _socket->readyRead();
  _state = State::answering;
}

void RequestGate::refuse(const RefusedRequest &refused) {
  _state = State::refused;
  connect(_socket, &QTcpSocket::bytesWritten, this, [this] {
    if (_socket->bytesToWrite() == 0)
      ::shutdown(static_cast<int>(_socket->socketDescriptor()), SHUT_WR);
  });
  HttpAnswer::fault(refused.status, refused.reason).writeTo(*_socket);
  // The rest of the request is read and dropped: closing over unread bytes would take the answer back.
  _socket->readAll();
  _limit.start(farewell_limit_ms);
}

} // namespace buttondriver::simulator
