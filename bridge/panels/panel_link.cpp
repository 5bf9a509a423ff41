// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/panel_link.h"

#include <utility>

namespace buttondriver::bridge {

namespace {

/// So little may wait in the socket: what has not been handed to it can still be replaced by something newer.
constexpr qint64 most_in_socket = 16 * 1024;

} // namespace

PanelLink::PanelLink(QString host, quint16 port, Restore restore, Times times, QObject *parent)
    : QObject(parent), _host(std::move(host)), _port(port), _restore(std::move(restore)), _times(times),
      _pause(times.first_pause_ms, times.longest_pause_ms) {
  _timer.setSingleShot(true);
  connect(&_timer, &QTimer::timeout, this, &PanelLink::timeIsUp);
  connect(&_socket, &QTcpSocket::connected, this, &PanelLink::greet);
  connect(&_socket, &QTcpSocket::readyRead, this, &PanelLink::takeAnswers);
  connect(&_socket, &QTcpSocket::bytesWritten, this, [this] {
    // Nothing comes here unless the system had taken less than all: so the panel has taken some.
    _since_movement.start();
    goOn();
  });
  connect(&_socket, &QTcpSocket::errorOccurred, this, [this] { _has_failed = true; });
  // Not at once: the socket may be in the middle of something.
  connect(&_socket, &QTcpSocket::errorOccurred, this, &PanelLink::checkSocket, Qt::QueuedConnection);
  connect(&_socket, &QTcpSocket::disconnected, this, &PanelLink::checkSocket, Qt::QueuedConnection);
}

PanelLink::~PanelLink() {
  // It has signals to send when it goes, and this object is not whole then.
  _socket.disconnect(this);
}

void PanelLink::start() {
  if (_state == State::not_started)
    connectToPanel();
}

void PanelLink::release() {
  if (std::exchange(_is_released, true))
    return;
  restore();
}

void PanelLink::restore() {
  if (!takesCommands())
    return;
  beginRestoration();
  goOn();
}

PanelLink::Taken PanelLink::send(const QByteArray &topic, const Command &command, bool is_kept) {
  if (!takesCommands())
    return Taken::not_connected;
  if (is_kept && _had_no_room) {
    ++_numbers.refused;
    return Taken::no_room;
  }
  if (_waiting.isEmpty() && hasRoomInSocket()) {
    hand(topic, command, is_kept);
    return Taken::yes;
  }
  const WaitingCommands::Added added = _waiting.add(topic, command, is_kept);
  _numbers.waiting_commands = _waiting.count();
  _numbers.waiting_bytes = _waiting.bytes();
  if (added == WaitingCommands::Added::no_room) {
    ++_numbers.refused;
    _had_no_room |= is_kept;
    return Taken::no_room;
  }
  if (added == WaitingCommands::Added::replaced)
    ++_numbers.replaced;
  return Taken::yes;
}

bool PanelLink::hasRoomInSocket() const { return _socket.bytesToWrite() < most_in_socket; }

void PanelLink::hand(const QByteArray &topic, const Command &command, bool is_kept) {
  const bool is_written = write(command.frame);
  ++_numbers.sent;
  if (!is_kept && (!is_written || _socket.bytesToWrite() > 0))
    _sent_tail.add(_handed, topic);
}

/// An end that shows when something is written has no signal, and the system does not tell of it again.
bool PanelLink::write(const QByteArray &frame) {
  _handed += frame.size();
  if (!_has_failed && _socket.write(frame) < 0) {
    _has_failed = true;
    QMetaObject::invokeMethod(this, &PanelLink::checkSocket, Qt::QueuedConnection);
  }
  return !_has_failed;
}

void PanelLink::beginRestoration() {
  ++_restorations;
  _had_no_room = false;
  _proof = Proof::after_restoration;
  _waiting.restore(_restore());
}

void PanelLink::goOn() {
  if (_state != State::up)
    return;
  if (!_has_failed) // after that nothing leaves, and the socket may have dropped what was to
    _sent_tail.left(_handed - _socket.bytesToWrite());
  do {
    while (!_waiting.isEmpty() && hasRoomInSocket()) {
      const WaitingCommands::Item &item = _waiting.first();
      hand(item.topic, item.command, item.is_kept);
      _waiting.removeFirst();
    }
    if (_proof == Proof::after_restoration && !_waiting.isRestoring())
      proveRestoration();
    if (_had_no_room && _waiting.isEmpty())
      beginRestoration();
  } while (!_waiting.isEmpty() && hasRoomInSocket());
  _numbers.waiting_commands = _waiting.count();
  _numbers.waiting_bytes = _waiting.bytes();
}

/// The answer to a ping that goes after it tells.
void PanelLink::proveRestoration() {
  _proof = Proof::with_next_ping;
  if (!_awaits_answer)
    ping();
}

} // namespace buttondriver::bridge
