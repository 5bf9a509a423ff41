// SPDX-License-Identifier: Apache-2.0
#include "server/client_buttondriver.h"

#include "buttons/button_setter.h"
#include "logging/log_line.h"
#include "protocol/framing.h"
#include "server/limits.h"

#include <QTcpSocket>

namespace buttondriver {

namespace {

/// Ids go on for as long as the process lives; after 2^32 / 1000 connections they wrap.
qint32 take_client_id() {
  static quint32 next_client_id = 1000;
  const quint32 id = next_client_id;
  next_client_id += 1000;
  return static_cast<qint32>(id);
}

} // namespace

ClientButtondriver::ClientButtondriver(QObject *parent, QTcpSocket *socket, ButtonSetter *setter,
                                       LargeFrameBudget *budget)
    : QObject(parent), _socket(socket), _setter(setter), _budget(budget ? budget : &_own_budget) {
  if (!_socket) {
    debug_line() << "collector: ClientButtondriver::ClientButtondriver, null socket";
    return;
  }
  _socket->setParent(this);
  _socket->setReadBufferSize(limits::read_ahead);
  // A peer that is cut off without a word is noticed in the end, after hours, and its place is free again.
  _socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
  _descriptor = _socket->socketDescriptor();
  _client_id = take_client_id();
  _state = State::reading;
  connect(_socket, &QTcpSocket::readyRead, this, &ClientButtondriver::clientData);
  connect(_socket, &QTcpSocket::bytesWritten, this, &ClientButtondriver::answersRead);
  connect(_socket, &QTcpSocket::errorOccurred, this, &ClientButtondriver::saveUndelivered);
  connect(_socket, &QTcpSocket::disconnected, this, &ClientButtondriver::clientDisconnected);
}

ClientButtondriver::~ClientButtondriver() {
  if (_socket)
    releaseSocket();
  endLargeFrame();
}

void ClientButtondriver::clientData() {
  switch (_state) {
  case State::reading:
    return readSocket();
  case State::blocked:
    _socket->skip(_socket->bytesAvailable());
    return;
  case State::draining:
    drain();
    if (_state == State::gone)
      leave();
    return;
  case State::gone:
    critical_line() << "buttondriver::ClientButtondriver::clientData NULL socket";
  }
}

/// A turn of an open connection.
void ClientButtondriver::readSocket() {
  if (_socket->bytesToWrite() > limits::unread_answers)
    return readNoFurther();
  const std::size_t delivered = deliver(*_socket, *_socket);
  // At once: a client that has closed its side is gone when the event loop next comes by.
  if (_socket->bytesToWrite() > 0)
    _socket->flush();
  // Where the answers could not be sent any more, the connection has just ended.
  if (_state != State::reading)
    return;
  const bool is_more = prepareNextFrame();
  keepReading();
  if (is_more && delivered > 0)
    emit wantsTurn();
}

/// A turn of a connection that has ended. Nobody hears its answers. What is held back gets its turn later.
void ClientButtondriver::drain() {
  QBuffer unheard;
  unheard.open(QIODevice::WriteOnly);
  const std::size_t delivered = deliver(_undelivered, unheard);
  if (!peek_frame(_undelivered).is_complete)
    _state = State::gone;
  else if (delivered > 0)
    emit wantsTurn();
}

std::size_t ClientButtondriver::deliver(QIODevice &stream, QIODevice &reply) {
  const std::vector<QByteArray> messages = take_frames(stream, limits::messages_per_turn, _delivery);
  _setter->process_messages(messages, &reply, _client_id);
  return messages.size();
}

/// The socket throws away what was read when its answers cannot be sent; before that it tells that it has failed.
void ClientButtondriver::saveUndelivered() {
  if (_state == State::reading && _socket->bytesAvailable() > 0)
    _undelivered.buffer() += _socket->readAll();
}

/// Sees to it that the frame that now comes first can be put together. True when it is there already.
bool ClientButtondriver::prepareNextFrame() {
  const FrameHead head = peek_frame(*_socket);
  if (head.is_complete) {
    readNoFurther();
    return true;
  }
  // A length that wraps asks for what is there, and never gets here.
  if (head.is_known && head.length > limits::largest_frame) {
    blockForGood(head.length);
    return false;
  }
  const qint64 needed = head.bytes_needed;
  if (needed <= limits::read_ahead) {
    endLargeFrame();
    _socket->setReadBufferSize(limits::read_ahead);
  } else if (_large_frame == 0 && _budget->take(needed)) {
    _large_frame = needed;
    _socket->setReadBufferSize(needed);
  }
  return false;
}

/// Until the next turn. Otherwise the end of the connection would be noticed before what is there has been answered.
void ClientButtondriver::readNoFurther() {
  if (_socket->bytesAvailable() > 0)
    _socket->setReadBufferSize(_socket->bytesAvailable());
}

/// After its buffer was full, a socket reads on only when the buffer is emptied or its size changes; what is left in it
/// may be the beginning of a frame whose rest is still to come.
void ClientButtondriver::keepReading() {
  const qint64 size = _socket->readBufferSize();
  if (_socket->bytesAvailable() == 0 || _socket->bytesAvailable() >= size)
    return;
  _socket->setReadBufferSize(size + 1);
  _socket->setReadBufferSize(size);
}

void ClientButtondriver::blockForGood(quint32 length) {
  endLargeFrame();
  _state = State::blocked;
  critical_line() << "buttondriver: frame too large, connection blocked, descriptor" << qint64{_descriptor} << "size"
                  << length;
  _socket->skip(_socket->bytesAvailable());
  _socket->setReadBufferSize(limits::read_ahead);
}

void ClientButtondriver::endLargeFrame() {
  if (_large_frame == 0)
    return;
  _budget->giveBack(_large_frame);
  _large_frame = 0;
  emit largeFrameEnded();
}

void ClientButtondriver::answersRead() {
  if (_socket->bytesAvailable() > 0 && _socket->bytesToWrite() <= limits::unread_answers)
    emit wantsTurn();
}

void ClientButtondriver::clientDisconnected() {
  if (!connected())
    return;
  saveUndelivered();
  if (_undelivered.data().isEmpty()) {
    _state = State::gone;
  } else {
    _state = State::draining;
    _undelivered.open(QIODevice::ReadOnly);
    drain();
  }
  debug_line() << "buttondriver: client disconnected" << qint64{_descriptor};
  releaseSocket();
  if (_state == State::gone)
    leave();
}

/// The last step. Whoever hears of it deletes this object later.
void ClientButtondriver::leave() {
  endLargeFrame();
  emit closed();
}

void ClientButtondriver::releaseSocket() {
  // Closing may emit disconnected() too.
  _socket->disconnect(this);
  _socket->close();
  _socket->deleteLater();
  _socket = nullptr;
}

} // namespace buttondriver
