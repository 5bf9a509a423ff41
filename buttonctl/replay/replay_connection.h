// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/session/endpoint.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QTcpSocket>

namespace buttondriver::buttonctl {

/// A connection that only sends; answers are dropped. Nothing blocks: all of it works by the event loop.
class ReplayConnection {
public:
  /// Begins to connect.
  explicit ReplayConnection(const Endpoint &endpoint);
  ~ReplayConnection();
  ReplayConnection(const ReplayConnection &) = delete;
  ReplayConnection &operator=(const ReplayConnection &) = delete;

  void send(const QByteArray &bytes);
  /// Nothing more will be sent: closes once everything has left.
  void end();

  /// A failure when something went wrong; also when for as long as the endpoint's time-out the connection did not come
  /// about, or nothing could be sent.
  Outcome<Done> outcome() const;
  /// Everything was sent and the daemon has closed its side too, or does not do so in a second.
  bool isClosed() const;

private:
  void shutDownWhenSent();
  void fail();
  QString peer() const;

  const Endpoint _endpoint;
  Outcome<Done> _outcome{Done{}};
  bool _was_connected = false;
  bool _is_ending = false;
  bool _is_shut_down = false;
  QElapsedTimer _since_progress; ///< since something was sent, or there was something to send again
  QTcpSocket _socket;
};

} // namespace buttondriver::buttonctl
