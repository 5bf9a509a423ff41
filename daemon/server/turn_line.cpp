// SPDX-License-Identifier: Apache-2.0
#include "server/turn_line.h"

#include <algorithm>
#include <utility>

namespace buttondriver {

TurnLine::TurnLine(std::function<void(ClientButtondriver *)> serve) : _serve(std::move(serve)) {
  // With no interval it fires once in each round of the event loop.
  _timer.setInterval(0);
  QObject::connect(&_timer, &QTimer::timeout, &_timer, [this] { serveRound(); });
}

void TurnLine::join(ClientButtondriver *client) {
  if (!_members.insert(client).second)
    return;
  _line.push_back(client);
  if (!_timer.isActive())
    _timer.start();
}

void TurnLine::joinAll(const std::vector<ClientButtondriver *> &clients) {
  ++_first;
  for (std::size_t i = 0; i < clients.size(); ++i)
    join(clients[(_first + i) % clients.size()]);
}

void TurnLine::leave(ClientButtondriver *client) {
  if (_members.erase(client) > 0)
    _line.erase(std::find(_line.begin(), _line.end(), client));
}

void TurnLine::serveRound() {
  for (std::size_t left = _line.size(); left > 0 && !_line.empty(); --left) {
    ClientButtondriver *client = _line.front();
    leave(client);
    _serve(client);
  }
  if (_line.empty())
    _timer.stop();
}

} // namespace buttondriver
