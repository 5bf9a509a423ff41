// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/frames.h"

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>
#include <vector>

namespace buttondriver::bridge::test {

/// What clears a panel of which nothing is known: 24 buttons, 32 status LEDs, 2 toggle indicators and 3 screens.
inline constexpr std::size_t messages_for_whole_panel = 24 + 32 + 2 + 3;

/// What listens where a panel should be, and does as the test says. In the test's own event loop.
class PanelStandIn {
public:
  /// On a port that the system gives, of 127.0.0.1.
  PanelStandIn();

  quint16 port() const { return _port; }
  void close();
  void openAgain();

  bool answers_pings = true;
  bool closes_at_once = false;
  bool reads = true; ///< see readOn()

  /// Reads again what was left lying while `reads` was false.
  void readOn();
  /// Takes what is there now, if it does not read; more can come then.
  void readOnce();
  void write(const QByteArray &bytes);
  /// Ends the connection at once, whatever waits in it.
  void hangUp();

  bool hasConnection() const { return _socket != nullptr; }
  int connections() const { return _connections; }
  int pings() const { return _pings; }
  /// How many messages of the present connection had come before the last ping.
  std::size_t messagesBeforeLastPing() const { return _messages_before_last_ping; }
  /// Messages of the present connection but for pings.
  const std::vector<QByteArray> &messages() const { return _messages; }
  void forgetMessages() { _messages.clear(); }
  /// Bytes of a message of the present connection that is not whole.
  qint64 unfinished() const { return _cutter->unfinished(); }

private:
  void take();
  void read();

  QTcpServer _server;
  quint16 _port = 0;
  QTcpSocket *_socket = nullptr; // the server's
  std::unique_ptr<FrameCutter> _cutter;
  std::vector<QByteArray> _messages;
  int _connections = 0;
  int _pings = 0;
  std::size_t _messages_before_last_ping = 0;
};

} // namespace buttondriver::bridge::test
