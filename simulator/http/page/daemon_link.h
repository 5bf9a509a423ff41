// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/frames.h"

#include <QObject>
#include <QTcpSocket>

#include <optional>

namespace buttondriver::simulator {

/// A page's own connection to the daemon, so that what it sends goes the way of every client's messages. It is made
/// with the first message.
class DaemonLink : public QObject {
  Q_OBJECT

public:
  /// Messages are refused while so many bytes have not been taken by the daemon.
  static constexpr qint64 most_unsent_bytes = 1024 * 1024;

  /// `port` is 0 when the daemon has no server; nothing when there is no daemon in this program.
  explicit DaemonLink(std::optional<quint16> port);

  /// Sends one message in network order, without its length; failed() says when that cannot be done.
  void send(const QByteArray &message);

signals:
  /// The daemon has sent a message of this name.
  void answered(const QString &name);
  void failed(const QString &reason);

private:
  void read();

  std::optional<quint16> _port;
  FrameCutter _answers;
  QTcpSocket _socket;
};

} // namespace buttondriver::simulator
