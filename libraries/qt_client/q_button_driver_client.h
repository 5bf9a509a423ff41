// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTcpSocket>

#include <cstddef>
#include <vector>

namespace buttondriver {

/// Sends messages to a command server from a program with a Qt event loop: frames each one and keeps the connection.
/// A message goes without its length prefix, as the encoders make it. There are no errors: what cannot be sent because
/// the server is not there within a second is dropped, and so is what has not left yet when the connection breaks.
/// Answers of the server are thrown away.
///
/// What the server does not take yet waits here. While more than sendLimit() bytes wait, further messages are refused
/// and dropped, each call of a slot as a whole; refused() tells. So a message of any size is sent when nothing waits,
/// and at most the limit and one call's messages wait.
///
/// Belongs to one thread. Others reach its slots through queued connections; the list's type is registered for that,
/// under the very name that stands in SLOT(msg(vector<QByteArray>)).
class QButtonDriverClient : public QObject {
  Q_OBJECT

public:
  template <typename T> using vector = std::vector<T>;

  /// Starts to connect to the default port of this machine, 3003, without waiting.
  QButtonDriverClient();
  /// Starts to connect to `port` of `host`, a name or an address, without waiting.
  QButtonDriverClient(const QString &host, quint16 port);

  /// Waits until the connection is up, trying again every 200 ms while the server refuses. False after `msecs`
  /// milliseconds, or up to one pause later; at once when that is less than 1.
  bool waitForConnected(int msecs);
  /// Waits until some of the messages that are not yet sent have left. False after `msecs` milliseconds (-1: never
  /// gives up), when nothing waits to leave, and when the connection breaks.
  bool waitForBytesWritten(int msecs);

  static constexpr qint64 default_send_limit = 1024 * 1024;
  /// How many bytes may wait to be taken by the server while messages are still accepted.
  qint64 sendLimit() const { return _send_limit; }
  /// `bytes` of 0 refuses messages while anything waits. What waits already stays.
  void setSendLimit(qint64 bytes) { _send_limit = bytes; }

Q_SIGNALS:
  /// `count` messages were dropped, because more than sendLimit() bytes wait. Sent from within the slot that was
  /// called; who wants to send them again does so later, when waitForBytesWritten() has returned true.
  void refused(int count);

public Q_SLOTS:
  /// Sends one message. Blocks for up to about a second while the connection is not up.
  void msg(QByteArray message);
  /// Sends several messages in their order; blocks as for one. An empty list sends nothing.
  void msg(vector<QByteArray> messages);
  void connected();

private:
  void connectToServer();
  bool isFull();
  void send(const QByteArray *messages, std::size_t count);

  QString _host;
  quint16 _port;
  qint64 _send_limit = default_send_limit;
  QTcpSocket _socket;
};

} // namespace buttondriver
