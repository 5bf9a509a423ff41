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
/// A message goes without its length prefix, as the encoders make it. Answers of the server are thrown away.
///
/// Connection. It is down, on its way, or up; isConnected() says whether it is up, and connectionChanged() tells when
/// that changes. The constructor starts to connect. After an attempt that failed, and after a connection that broke,
/// the next attempt starts with the next message, connectToServer() or waitForConnected(), not by itself.
///
/// Waiting. While the connection is not up, each message blocks its caller for up to a second, the whole second where
/// nobody is there. A program that must not stand still says setConnectWait(0): then a message starts an attempt at
/// most and returns at once, and connectToServer() can be called now and then by a timer. A server's name is looked up
/// by the system, whose time comes on top of each wait; an address needs no time.
///
/// What is lost. A message for which the connection does not come up in time is dropped; dropped() tells. While more
/// than sendLimit() bytes have not been taken by the server, further messages are dropped as well; refused() tells.
/// Each call of a slot is sent or dropped as a whole; so a message of any size is sent when nothing waits, and at most
/// the limit and one call's messages wait. What has not left yet when the connection breaks is lost; nobody knows how
/// much of it the server has got, connectionChanged(false) tells that it may be so.
///
/// Thread. Belongs to one thread, as its socket does; its signals come from that one. Others reach its slots through
/// queued connections; the list's type is registered for that, under the very name that stands in
/// SLOT(msg(vector<QByteArray>)).
class QButtonDriverClient : public QObject {
  Q_OBJECT

public:
  /// So that the slot msg has the signature that SLOT() names.
  template <typename T> using vector = std::vector<T>;

  /// Starts to connect to the default port of this machine, 3003, without waiting.
  QButtonDriverClient();
  /// Starts to connect to `port` of `host`, a name or an address, without waiting.
  QButtonDriverClient(const QString &host, quint16 port);

  /// Starts to connect, without waiting, unless the connection is up or on its way.
  void connectToServer();
  /// Whether the connection is up, as far as is known.
  bool isConnected() const { return _socket.state() == QAbstractSocket::ConnectedState; }
  /// Waits until the connection is up, trying again every 200 ms while the server refuses. False after `msecs`
  /// milliseconds, or up to one pause later; at once when that is less than 1.
  bool waitForConnected(int msecs);
  /// Waits until some of the messages that are not yet sent have left. False after `msecs` milliseconds (-1: never
  /// gives up), when nothing waits to leave, and when the connection breaks.
  bool waitForBytesWritten(int msecs);

  /// Milliseconds, for connectWait().
  static constexpr int default_connect_wait = 1000;
  /// How many milliseconds a message waits for a connection that is not up.
  int connectWait() const { return _connect_wait; }
  /// `msecs` below 1: messages do not wait at all.
  void setConnectWait(int msecs) { _connect_wait = msecs; }

  /// Bytes, for sendLimit().
  static constexpr qint64 default_send_limit = 1024 * 1024;
  /// How many bytes may wait to be taken by the server while messages are still accepted.
  qint64 sendLimit() const { return _send_limit; }
  /// `bytes` of 0 refuses messages while anything waits. What waits already stays.
  void setSendLimit(qint64 bytes) { _send_limit = bytes; }

Q_SIGNALS:
  /// `count` messages were dropped, because more than sendLimit() bytes wait. Sent from within the slot that was
  /// called; who wants to send them again does so later, when waitForBytesWritten() has returned true.
  void refused(int count);
  /// `count` messages were dropped, because the connection did not come up within connectWait(). Sent from within the
  /// slot that was called.
  void dropped(int count);
  /// The connection came up, or it broke. Always sent from the event loop, once for each change, in their order; so
  /// isConnected() may know of a later one already.
  void connectionChanged(bool is_connected);

public Q_SLOTS:
  /// Sends one message. While the connection is not up, blocks for up to connectWait(), and one pause of 200 ms more.
  void msg(QByteArray message);
  /// Sends several messages in their order; blocks as for one. An empty list sends nothing.
  void msg(vector<QByteArray> messages);
  /// Does nothing, for programs that connect it; connectionChanged() tells of connections.
  void connected();

private:
  bool isFull();
  void send(const QByteArray *messages, std::size_t count);

  QString _host;
  quint16 _port;
  int _connect_wait = default_connect_wait;
  qint64 _send_limit = default_send_limit;
  QTcpSocket _socket;
};

} // namespace buttondriver
