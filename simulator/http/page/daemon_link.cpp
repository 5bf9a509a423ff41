// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/page/daemon_link.h"

#include "bytes/byte_view.h"
#include "protocol/catalogue.h"
#include "protocol/framing.h"

#include <QHostAddress>

namespace buttondriver::simulator {

namespace {

/// The daemon's answers are small; more than this is none of them.
constexpr qint64 most_buffered = 64 * 1024;

} // namespace

DaemonLink::DaemonLink(quint16 port) : _port(port) {
  _socket.setReadBufferSize(most_buffered);
  connect(&_socket, &QTcpSocket::readyRead, this, &DaemonLink::read);
  connect(&_socket, &QTcpSocket::connected, this,
          [this] { _socket.setSocketOption(QAbstractSocket::LowDelayOption, 1); });
  connect(&_socket, &QTcpSocket::errorOccurred, this,
          [this] { emit failed(QStringLiteral("the daemon: %1").arg(_socket.errorString())); });
}

void DaemonLink::send(const QByteArray &message) {
  if (_port == 0) {
    emit failed(QStringLiteral("the daemon has no server"));
    return;
  }
  if (_socket.bytesToWrite() > most_unsent_bytes) {
    emit failed(QStringLiteral("too much has been sent at once"));
    return;
  }
  if (_socket.state() == QAbstractSocket::UnconnectedState)
    _socket.connectToHost(QHostAddress(QHostAddress::LocalHost), _port);
  const auto prefix = frame_prefix(static_cast<std::uint32_t>(message.size()));
  _socket.write(reinterpret_cast<const char *>(prefix.data()), frame_prefix_size);
  _socket.write(message);
}

void DaemonLink::read() {
  while (_socket.bytesAvailable() >= qint64{frame_prefix_size}) {
    const QByteArray bytes = _socket.peek(most_buffered);
    const ByteView view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const std::uint32_t size = view.big_endian_32(0);
    if (qint64{size} + frame_prefix_size > most_buffered) {
      _socket.abort();
      return;
    }
    if (bytes.size() < qint64{size} + frame_prefix_size)
      return;
    const MessageType *type = find_message_type(view.big_endian_32(frame_prefix_size));
    _socket.skip(qint64{size} + frame_prefix_size);
    emit answered(type ? QLatin1String(type->name) : QStringLiteral("an unknown answer"));
  }
}

} // namespace buttondriver::simulator
