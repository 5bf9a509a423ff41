// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTimer>

#include <cstddef>
#include <deque>
#include <functional>
#include <unordered_set>
#include <vector>

namespace buttondriver {

class ClientButtondriver;

/// The line of connections that want a turn: first come, first served, each in it once at most. While somebody is in
/// it, each round of the event loop serves all who are in it when the round begins; sockets are read between two
/// rounds. Lives on the event loop's thread. The connections stay the caller's and leave before they are deleted.
class TurnLine {
public:
  /// `serve` gives one connection its turn. It is called by the event loop only, and may let any connection join or
  /// leave. The connection that it gets has left the line; when it joins again, it waits for the next round.
  explicit TurnLine(std::function<void(ClientButtondriver *)> serve);

  /// Joins at the end. Has no effect on a connection that is in the line already.
  void join(ClientButtondriver *client);
  /// Each call begins with another one of `clients`: what is to be had may be used up before all have had their turn.
  void joinAll(const std::vector<ClientButtondriver *> &clients);
  /// Has no effect on a connection that is not in the line.
  void leave(ClientButtondriver *client);

private:
  void serveRound();

  std::function<void(ClientButtondriver *)> _serve;
  std::deque<ClientButtondriver *> _line;
  std::unordered_set<ClientButtondriver *> _members; // the same ones, for a quick look
  std::size_t _first = 0;                            // the place in `clients` at which the last joinAll began
  QTimer _timer;                                     // runs while somebody is in the line
};

} // namespace buttondriver
