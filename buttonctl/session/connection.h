// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/session/endpoint.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QTcpSocket>

namespace buttondriver::buttonctl {

/// One connection to the daemon. Every call blocks, at most about the endpoint's timeout where nothing moves; after a
/// failure only destruction is left.
class Connection {
public:
  explicit Connection(Endpoint endpoint);
  Connection(const Connection &) = delete;
  Connection &operator=(const Connection &) = delete;

  Outcome<Done> open();

  /// Returns when `bytes` have left this process.
  Outcome<Done> send(const QByteArray &bytes);

  /// Sends `bytes`, a framed ping, and waits for the answer: the round trip in milliseconds.
  Outcome<double> ping(const QByteArray &bytes);

  /// Lets the daemon know that nothing more comes, and waits until the daemon has closed its side too, so that nothing
  /// that was sent is thrown away on the way; a daemon that is too busy for that is not waited for any longer than a
  /// second.
  Outcome<Done> close();

  /// The system's last error, for a caller that has to tell failures apart.
  QAbstractSocket::SocketError error() const { return _socket.error(); }

  /// "127.0.0.1 port 3003"
  QString peer() const;

private:
  Failure connectionFailure() const;
  Failure lost() const;

  const Endpoint _endpoint;
  QTcpSocket _socket;
};

} // namespace buttondriver::buttonctl
