// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/page/daemon_link.h"

#include "bytes/view_of.h"
#include "protocol/catalogue.h"
#include "protocol/framing.h"

#include <QHostAddress>

namespace buttondriver::simulator {

namespace {

/// The daemon's answers are small; more than this is none of them.
constexpr std::uint32_t most_buffered = 64 * 1024;
constexpr std::uint32_t longest_answer = most_buffered - frame_prefix_size;

} // namespace

DaemonLink::DaemonLink(std::optional<quint16> port) : _port(port), _answers(longest_answer) {
  _socket.setReadBufferSize(most_buffered);
  connect(&_socket, &QTcpSocket::readyRead, this, &DaemonLink::read);
  connect(&_socket, &QTcpSocket::connected, this, [this] {
    _answers = FrameCutter(longest_answer);
    _socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
  });
  connect(&_socket, &QTcpSocket::errorOccurred, this,
          [this] { emit failed(QStringLiteral("the daemon: %1").arg(_socket.errorString())); });
}

void DaemonLink::send(const QByteArray &message) {
  if (!_port) {
    emit failed(QStringLiteral("the panel is driven from outside"));
    return;
  }
  if (*_port == 0) {
    emit failed(QStringLiteral("the daemon has no server"));
    return;
  }
  if (_socket.bytesToWrite() > most_unsent_bytes) {
    emit failed(QStringLiteral("too much has been sent at once"));
    return;
  }
  if (_socket.state() == QAbstractSocket::UnconnectedState)
    _socket.connectToHost(QHostAddress(QHostAddress::LocalHost), *_port);
  _socket.write(framed(message));
}

void DaemonLink::read() {
  for (const QByteArray &answer : _answers.take(_socket.readAll())) {
    const MessageType *type = find_message_type(view_of(answer).bigEndian32(0));
    emit answered(type ? QLatin1String(type->name) : QStringLiteral("an unknown answer"));
  }
  if (_answers.hasLostTrack())
    _socket.abort();
}

} // namespace buttondriver::simulator
