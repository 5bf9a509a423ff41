// SPDX-License-Identifier: Apache-2.0
#include "server/turns/turn_line.h"

#include <utility>

namespace buttondriver {

TurnLine::TurnLine(std::function<void(ClientButtondriver *)> serve) : _serve(std::move(serve)) {
  // With no interval it fires once in each round of the event loop.
  _timer.setInterval(0);
  QObject::connect(&_timer, &QTimer::timeout, &_timer, [this] { serveRound(); });
}

void TurnLine::join(ClientButtondriver *client) {
  _order.join(client);
  if (!_is_stopped && !_timer.isActive())
    _timer.start();
}

void TurnLine::stop() {
  _is_stopped = true;
  _timer.stop();
}

void TurnLine::go() {
  _is_stopped = false;
  serveRound();
  if (!_is_stopped && !_order.isEmpty() && !_timer.isActive())
    _timer.start();
}

void TurnLine::serveRound() {
  for (std::size_t left = _order.size(); left > 0 && !_is_stopped; --left)
    if (ClientButtondriver *client = _order.next())
      _serve(client);
  if (_order.isEmpty())
    _timer.stop();
}

} // namespace buttondriver
