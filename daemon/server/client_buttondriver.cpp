// SPDX-License-Identifier: Apache-2.0
#include "server/client_buttondriver.h"

#include "buttons/button_setter.h"
#include "logging/log_line.h"
#include "server/frames/frame_reader.h"
#include "server/frames/message_room.h"
#include "server/limits.h"

#include <QBuffer>
#include <QTcpSocket>

#include <algorithm>
#include <chrono>

namespace buttondriver {

namespace {

/// Ids go on for as long as the process lives; after 2^32 / 1000 connections they wrap.
qint32 take_client_id() {
  static quint32 next_client_id = 1000;
  const quint32 id = next_client_id;
  next_client_id += 1000;
  return static_cast<qint32>(id);
}

/// Counts the arrivals of bytes.
quint64 next_arrival() {
  static quint64 arrivals = 0;
  return ++arrivals;
}

/// For all connections: none needs it but during its turn.
MessageRoom &message_room() {
  static MessageRoom room;
  return room;
}

} // namespace

ClientButtondriver::ClientButtondriver(QObject *parent, QTcpSocket *socket, ButtonSetter *setter,
                                       LargeFrameBudget *budget)
    : QObject(parent), _socket(socket), _setter(setter),
      _own_budget(budget ? nullptr : std::make_unique<LargeFrameBudget>()),
      _large_frame(budget ? budget : _own_budget.get(), [this] { giveUpFrame(); }), _last_heard(next_arrival()) {
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
  // The signal declared last comes first: Qt has a list for each signal up to the last connected one, and keeps what
  // was too short for that while the connection is idle.
  connect(_socket, &QTcpSocket::disconnected, this, &ClientButtondriver::clientDisconnected);
  connect(_socket, &QTcpSocket::readyRead, this, &ClientButtondriver::clientData);
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
  case State::draining:
    drain();
    if (_state == State::owing)
      settle();
    return;
  case State::owing:
    return;
  case State::gone:
    critical_line() << "buttondriver::ClientButtondriver::clientData NULL socket";
  }
}

Answers &ClientButtondriver::answers() {
  if (!_answers)
    _answers.emplace(static_cast<int>(_descriptor));
  return *_answers;
}

/// A turn of an open connection.
void ClientButtondriver::readSocket() {
  _last_heard = next_arrival();
  if (_to_skip > 0)
    skip();
  Turn turn = deliver(*_socket);
  prepareNextFrame(turn);
  keepReading(turn.left);
  if (turn.next.is_complete)
    askForAnother(turn.delivered);
}

/// A turn of a connection that has ended. What is held back gets its turn later.
void ClientButtondriver::drain() {
  const Turn turn = deliver(*_undelivered);
  if (!turn.next.is_complete)
    _state = State::owing;
  else
    askForAnother(turn.delivered);
}

/// Turn, after one in which so many messages were delivered. None: what comes first has to wait.
void ClientButtondriver::askForAnother(std::size_t delivered) {
  if (delivered > 0)
    emit wantsTurn(false);
  else if (_delivery == FrameChoice::leading_pings)
    emit wantsTurn(true);
}

ClientButtondriver::Turn ClientButtondriver::deliver(QIODevice &stream) {
  std::chrono::nanoseconds cost{};
  bool has_large_frame = false;
  Turn turn;
  std::vector<QByteArray> messages;
  {
    FrameWindow window(stream);
    messages =
        take_frames(window, message_room(), limits::messages_per_turn, _delivery, [&](const QByteArray &message) {
          has_large_frame = has_large_frame || message.size() + qint64{frame_prefix_size} > limits::read_ahead;
          cost += std::max(_setter->deviceTime(message), limits::least_time_of_a_message);
          return cost >= limits::time_per_turn;
        });
    turn = {messages.size(), window.head(), window.left()};
  }
  _setter->process_messages(messages, &answers(), _client_id);
  message_room().giveBack(std::move(messages));
  // At once: a client that has closed its side is gone when the event loop next comes by.
  answers().send();
  if (has_large_frame)
    endLargeFrame();
  if (turn.delivered > 0) {
    _has_spoken = true;
    emit tookTurn(cost.count());
  }
  return turn;
}

/// Sees to it that the frame that comes first after `turn` can be put together.
void ClientButtondriver::prepareNextFrame(Turn &turn) {
  const FrameHead &head = turn.next;
  // A length that wraps asks for what is there: it is complete.
  if (head.is_complete)
    readNoFurther(turn.left);
  else if (head.is_known && head.length > limits::largest_frame)
    turn.left -= startToSkip(head.length);
  else if (head.bytes_needed > limits::read_ahead)
    growLargeFrame(head.bytes_needed, turn.left);
  else
    _socket->setReadBufferSize(limits::read_ahead);
}

/// As it arrives, so that nobody gets memory by announcing something.
void ClientButtondriver::growLargeFrame(qint64 needed, qint64 there) {
  const qint64 allowed = limits::read_ahead + _large_frame.size();
  const qint64 missing = needed - allowed;
  if (missing > 0 && there >= allowed && !_large_frame.grow(std::min(missing, limits::large_frame_step)))
    emit waitsForBudget();
  _socket->setReadBufferSize(std::min(needed, limits::read_ahead + _large_frame.size()));
}

/// Until the next turn. Otherwise the end of the connection would be noticed before what is there has been answered.
void ClientButtondriver::readNoFurther(qint64 there) { _socket->setReadBufferSize(there); }

/// After its buffer was full, a socket reads on only when the buffer is emptied or its size changes; what is left in it
/// may be the beginning of a frame whose rest is still to come.
void ClientButtondriver::keepReading(qint64 left) {
  const qint64 size = _socket->readBufferSize();
  if (left == 0 || left >= size)
    return;
  _socket->setReadBufferSize(size + 1);
  _socket->setReadBufferSize(size);
}

/// Returns how many bytes are skipped at once.
qint64 ClientButtondriver::startToSkip(quint32 length) {
  critical_line() << "buttondriver: frame too large, skipped, descriptor" << qint64{_descriptor} << "size" << length;
  _to_skip = quint64{length} + frame_prefix_size;
  const qint64 skipped = skip();
  _socket->setReadBufferSize(limits::read_ahead);
  return skipped;
}

qint64 ClientButtondriver::skip() {
  const auto there = static_cast<quint64>(_socket->bytesAvailable());
  const qint64 skipped = _socket->skip(static_cast<qint64>(std::min(_to_skip, there)));
  _to_skip -= static_cast<quint64>(skipped);
  return skipped;
}

/// The budget has gone to a frame that goes on growing.
void ClientButtondriver::giveUpFrame() {
  if (_state != State::reading)
    return;
  const FrameHead head = peek_frame(*_socket);
  critical_line() << "buttondriver: frame does not arrive, skipped, descriptor" << qint64{_descriptor} << "size"
                  << head.length;
  _to_skip = head.bytes_needed;
  skip();
  _socket->setReadBufferSize(limits::read_ahead);
}

void ClientButtondriver::endLargeFrame() {
  if (_large_frame.size() == 0)
    return;
  _large_frame.release();
  emit largeFrameEnded();
}

void ClientButtondriver::clientDisconnected() {
  if (!connected())
    return;
  answers().socketIsGone();
  if (_to_skip > 0)
    skip();
  if (const QByteArray rest = _socket->readAll(); rest.isEmpty()) {
    _state = State::owing;
  } else {
    _state = State::draining;
    _undelivered = std::make_unique<QBuffer>();
    _undelivered->setData(rest);
    _undelivered->open(QIODevice::ReadOnly);
    drain();
  }
  debug_line() << "buttondriver: client disconnected" << qint64{_descriptor};
  releaseSocket();
  if (_state == State::owing)
    settle();
}

void ClientButtondriver::giveUp() {
  if (!connected())
    return;
  critical_line() << "buttondriver: silent client gives its place to another, descriptor" << qint64{_descriptor};
  _state = State::gone;
  releaseSocket();
  leave();
}

/// Everything is delivered.
void ClientButtondriver::settle() {
  if (answers().isOwing()) {
    connect(&answers(), &Answers::settled, this, &ClientButtondriver::settle, Qt::UniqueConnection);
    return;
  }
  _state = State::gone;
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
