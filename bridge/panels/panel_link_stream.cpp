// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/panel_link.h"
#include "bridge/topics/topic_commands.h"

#include <utility>

namespace buttondriver::bridge {

namespace {

/// What the system keeps for a connection: more would be old before a slow panel has it.
constexpr int send_buffer_bytes = 64 * 1024;
constexpr int read_buffer_bytes = 4 * 1024;

} // namespace

void PanelLink::connectToPanel() {
  _state = State::connecting;
  _has_failed = false;
  _timer.start(_times.ping_timeout_ms);
  // Without buffers, for most of the time nothing is there to be buffered, and a thousand of them are many.
  _socket.setReadBufferSize(read_buffer_bytes);
  _socket.connectToHost(_host, _port, QIODevice::ReadWrite | QIODevice::Unbuffered);
}

void PanelLink::greet() {
  _socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
  _socket.setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, send_buffer_bytes);
  _state = State::greeting;
  _answers = {};
  ping();
}

void PanelLink::ping() {
  write(ping_frame());
  _awaits_answer = true;
  if (_proof == Proof::with_next_ping)
    _proof = Proof::with_this_ping;
  _since_ping.start();
  _since_movement.start();
  _timer.start(_times.ping_timeout_ms);
}

void PanelLink::takeAnswers() {
  char bytes[256];
  for (;;) {
    const qint64 count = _socket.read(bytes, sizeof bytes);
    if (count <= 0) {
      // A connection that ends while it is read has no signal for that.
      if (count < 0)
        QMetaObject::invokeMethod(this, &PanelLink::checkSocket, Qt::QueuedConnection);
      return;
    }
    const int answers = _answers.take(bytes, static_cast<std::size_t>(count));
    if (answers < 0 || answers > (_awaits_answer ? 1 : 0)) {
      breakOff(QStringLiteral("it sent something else than answers to pings"));
      return;
    }
    if (answers > 0)
      takeAnswer();
  }
}

void PanelLink::takeAnswer() {
  _awaits_answer = false;
  _numbers.ping_seconds = static_cast<double>(_since_ping.nsecsElapsed()) / 1e9;
  _timer.start(_times.ping_interval_ms);
  if (_state == State::greeting) {
    _state = State::up;
    _pause.reset();
    _numbers.is_up = true;
    _numbers.reconnects += _was_up ? 1 : 0;
    _was_up = true;
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT availabilityChanged(true); }, Qt::QueuedConnection);
    restore();
    return;
  }
  if (_proof == Proof::with_next_ping) {
    ping();
  } else if (_proof == Proof::with_this_ping) {
    _proof = Proof::none;
    const auto tell = [this, restoration = _restorations] {
      if (restoration == _restorations)
        Q_EMIT restored();
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
  }
}

void PanelLink::timeIsUp() {
  switch (_state) {
  case State::not_started:
    return;
  case State::pausing:
    return connectToPanel();
  case State::connecting:
  case State::greeting:
    return breakOff(QStringLiteral("it does not answer"));
  case State::up:
    break;
  }
  if (!_awaits_answer)
    return ping();
  const qint64 rest_ms = _times.ping_timeout_ms - _since_movement.elapsed();
  if (rest_ms <= 0)
    return breakOff(QStringLiteral("it does not answer any more"));
  _timer.start(static_cast<int>(rest_ms));
}

void PanelLink::checkSocket() {
  if (isActive() && (_has_failed || _socket.state() == QAbstractSocket::UnconnectedState))
    breakOff(_socket.errorString());
}

void PanelLink::breakOff(const QString &reason) {
  drop();
  _timer.start(_pause.next());
  QMetaObject::invokeMethod(
      this, [this, reason] { Q_EMIT brokeOff(reason); }, Qt::QueuedConnection);
}

void PanelLink::moveTo(const QString &host, quint16 port) {
  _host = host;
  _port = port;
  if (_state == State::not_started)
    return;
  drop();
  _pause.reset();
  connectToPanel();
}

/// The connection and what waits for it.
void PanelLink::drop() {
  const QVector<QByteArray> lost_topics = _sent_tail.take() + _waiting.clear();
  _state = State::pausing;
  const bool was_up = std::exchange(_numbers.is_up, false);
  _numbers.waiting_commands = 0;
  _numbers.waiting_bytes = 0;
  _socket.abort();
  if (was_up)
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT availabilityChanged(false); }, Qt::QueuedConnection);
  for (const QByteArray &topic : lost_topics)
    QMetaObject::invokeMethod(
        this, [this, topic] { Q_EMIT lost(topic); }, Qt::QueuedConnection);
}

} // namespace buttondriver::bridge
