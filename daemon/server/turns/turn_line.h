// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "server/limits.h"
#include "server/turns/fair_order.h"

#include <QTimer>

#include <chrono>
#include <functional>

namespace buttondriver {

class ClientButtondriver;

/// The line of connections that want a turn. Who has used the device least comes first, see FairOrder. While somebody
/// is in it and it is not stopped, each round of the event loop gives as many turns as there are connections in it
/// when the round begins; sockets are read between two rounds. Lives on the event loop's thread. The connections stay
/// the caller's and are forgotten before they are deleted.
class TurnLine {
public:
  /// `serve` gives one connection its turn, which `charge` is called for. It is called by the event loop and by `go`
  /// only, and may let any connection join or leave, and stop the line.
  explicit TurnLine(std::function<void(ClientButtondriver *)> serve);

  /// Has no effect on a connection that is in the line already.
  void join(ClientButtondriver *client);
  /// The connection is gone.
  void forget(ClientButtondriver *client) { _order.forget(client); }
  /// A turn of this connection has cost so much of the device's time, whether or not it had it from here.
  void charge(ClientButtondriver *client, std::chrono::nanoseconds cost) { _order.charge(client, cost); }

  /// Gives no turns until `go`. Who is in the line stays there.
  void stop();
  /// Gives the first round of turns at once.
  void go();

private:
  void serveRound();

  std::function<void(ClientButtondriver *)> _serve;
  FairOrder<ClientButtondriver> _order{limits::time_per_turn};
  bool _is_stopped = false;
  QTimer _timer; // runs while somebody is in the line and it is not stopped
};

} // namespace buttondriver
