// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/http/page/daemon_link.h"
#include "simulator/http/page/live_update.h"

#include <QObject>
#include <QWebSocket>

#include <memory>
#include <optional>

namespace buttondriver::simulator {

/// One open page: sends it updates, and takes the messages that its reader sends to the panel.
class PageSession : public QObject {
  Q_OBJECT

public:
  /// The largest message that a page can send: a picture as large as a screen, and room to spare.
  static constexpr quint64 largest_message = 64 * 1024;
  /// While so many bytes are on their way to a page, it is sent no more.
  static constexpr qint64 most_unsent_bytes = 256 * 1024;

  /// `daemon_port` is where the daemon listens, 0 when it does not; nothing when another program drives the panel.
  PageSession(std::unique_ptr<QWebSocket> socket, std::optional<quint16> daemon_port);
  /// Ends the connection, without a signal.
  ~PageSession() override;

  const FeedPosition &position() const { return _position; }
  /// Whether it has taken what it was sent so far, or nearly so.
  bool isReady() const;
  /// `update` starts at position().
  void send(const LiveUpdate &update);

signals:
  void ended();

private:
  void take(const QByteArray &message);

  std::unique_ptr<QWebSocket> _socket;
  FeedPosition _position;
  DaemonLink _link;
};

} // namespace buttondriver::simulator
