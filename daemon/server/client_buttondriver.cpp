// SPDX-License-Identifier: Apache-2.0
#include "server/client_buttondriver.h"

#include "buttons/button_setter.h"
#include "logging/log_line.h"
#include "protocol/framing.h"
#include "server/large_frame_budget.h"
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
    : QObject(parent), _socket(socket), _setter(setter), _budget(budget) {
  if (!_socket) {
    debug_line() << "collector: ClientButtondriver::ClientButtondriver, null socket";
    return;
  }
  _socket->setParent(this);
  _socket->setReadBufferSize(limits::read_ahead);
  // A peer that is cut off without a word is noticed in the end, after hours, and its place is free again.
  _socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
  _descriptor = _socket->socketDescriptor();
  _connected = true;
  connect(_socket, SIGNAL(errorOccurred(QAbstractSocket::SocketError)), this, SLOT(keepRest()));
  connect(_socket, SIGNAL(disconnected()), this, SLOT(clientDisconnected()));
  connect(_socket, SIGNAL(readyRead()), this, SLOT(clientData()));
  connect(_socket, SIGNAL(bytesWritten(qint64)), this, SLOT(answersRead()));
  _client_id = take_client_id();
}

ClientButtondriver::~ClientButtondriver() {
  if (_socket)
    releaseSocket();
}

void ClientButtondriver::clientData() {
  if (_rest.isOpen())
    return deliverRest();
  if (!_socket) {
    critical_line() << "buttondriver::ClientButtondriver::clientData NULL socket";
    return;
  }
  if (_is_blocked) {
    // Read and thrown away, so that the connection's end is noticed.
    _socket->skip(_socket->bytesAvailable());
    return;
  }
  if (_socket->bytesToWrite() > limits::unread_answers) {
    readNoFurther();
    return;
  }
  const std::size_t delivered = deliver(*_socket, *_socket);
  sendAnswers();
  // Where the answers could not be sent any more, the connection has just ended.
  if (!_socket)
    return;
  prepareNextFrame();
  keepReading();
  if (delivered == limits::messages_per_turn)
    emit wantsTurn();
}

std::size_t ClientButtondriver::deliver(QIODevice &stream, QIODevice &reply) {
  const std::vector<QByteArray> messages = take_frames(stream, limits::messages_per_turn, choice());
  _setter->process_messages(messages, &reply, _client_id);
  return messages.size();
}

/// At once: a client that has closed its side is gone when the event loop next comes by.
void ClientButtondriver::sendAnswers() {
  if (_socket->bytesToWrite() > 0)
    _socket->flush();
}

/// Called before a socket whose answers cannot be sent throws away what was read.
void ClientButtondriver::keepRest() {
  if (!_socket || _is_blocked || _rest.isOpen() || _socket->bytesAvailable() == 0)
    return;
  _rest.setData(_socket->readAll());
  _rest.open(QIODevice::ReadOnly);
}

/// A turn of a connection that has ended. Nobody hears its answers.
void ClientButtondriver::deliverRest() {
  QBuffer unheard;
  unheard.open(QIODevice::WriteOnly);
  const std::size_t delivered = deliver(_rest, unheard);
  if (delivered == limits::messages_per_turn)
    return emit wantsTurn();
  // What is held back gets its turn when that is over.
  if (peek_frame(_rest).is_complete)
    return;
  _rest.close();
  endLargeFrame();
  if (!_connected)
    emit closed();
}

/// Sees to it that the frame that now comes first can be put together.
void ClientButtondriver::prepareNextFrame() {
  const FrameHead head = peek_frame(*_socket);
  if (head.is_complete)
    return readNoFurther();
  // A length that wraps asks for what is there, and never gets here.
  if (head.is_known && head.length > limits::largest_frame)
    return blockForGood(head.length);
  const qint64 needed = head.bytes_needed;
  if (needed <= limits::read_ahead) {
    endLargeFrame();
    _socket->setReadBufferSize(limits::read_ahead);
  } else if (_large_frame == 0 && _budget->take(needed)) {
    _large_frame = needed;
    _socket->setReadBufferSize(needed);
  }
}

/// Until the next turn: the end of the connection would be noticed in front of the answers to what is there.
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
  _is_blocked = true;
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
  if (_socket && _socket->bytesAvailable() > 0 && _socket->bytesToWrite() <= limits::unread_answers)
    emit wantsTurn();
}

void ClientButtondriver::clientDisconnected() {
  if (_socket) {
    keepRest();
    if (_rest.isOpen())
      deliverRest();
    debug_line() << "buttondriver: client disconnected" << qint64{_descriptor};
    releaseSocket();
  }
  _connected = false;
  if (!_rest.isOpen())
    emit closed();
}

void ClientButtondriver::releaseSocket() {
  // Closing may say "disconnected" too.
  _socket->disconnect(this);
  _socket->close();
  _socket->deleteLater();
  _socket = nullptr;
  if (!_rest.isOpen())
    endLargeFrame();
}

} // namespace buttondriver
