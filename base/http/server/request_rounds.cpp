// SPDX-License-Identifier: Apache-2.0
#include "http/server/request_rounds.h"

#include <algorithm>
#include <utility>

namespace buttondriver {

void RequestRounds::add(const HttpClient &client) {
  const auto gone = [](const HttpClient &other) { return !other.isThere(); };
  _waiting.erase(std::remove_if(_waiting.begin(), _waiting.end(), gone), _waiting.end());
  _waiting.push_back(client);
  if (!_goes_on)
    start();
}

void RequestRounds::start() {
  _goes_on = true;
  _served = std::exchange(_waiting, {});
  const auto is_there = [](const HttpClient &client) { return client.isThere(); };
  _work([this, is_there] { return std::any_of(_served.begin(), _served.end(), is_there); },
        [this](const HttpAnswer &answer) { finish(answer); });
}

void RequestRounds::finish(const HttpAnswer &answer) {
  for (const HttpClient &client : std::exchange(_served, {}))
    client.answer(answer);
  _goes_on = false;
  if (!_waiting.empty())
    start();
}

} // namespace buttondriver
