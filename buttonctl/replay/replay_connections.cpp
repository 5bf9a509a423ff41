// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/replay/replay_connections.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <iterator>

namespace buttondriver::buttonctl {

namespace {

/// How often the time-outs of connections are looked at while nothing else happens.
constexpr int look_again_ms = 10;

} // namespace

Outcome<Done> ReplayConnections::send(const RecordedFrame &frame, bool is_last) {
  if (auto good = outcome(); !good)
    return good;
  for (auto entry = _connections.begin(); entry != _connections.end();)
    entry = entry->second->isClosed() ? _connections.erase(entry) : std::next(entry);
  std::unique_ptr<ReplayConnection> &connection = _connections[frame.connection];
  if (!connection)
    connection = std::make_unique<ReplayConnection>(_endpoint);
  connection->send(frame.bytes);
  if (is_last)
    connection->end();
  return Done{};
}

bool ReplayConnections::hasFailed() const { return !outcome(); }

Outcome<Done> ReplayConnections::finish() {
  QTimer look_again;
  look_again.start(look_again_ms);
  for (;;) {
    if (auto good = outcome(); !good)
      return good;
    if (std::all_of(_connections.begin(), _connections.end(),
                    [](const auto &entry) { return entry.second->isClosed(); }))
      return Done{};
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

Outcome<Done> ReplayConnections::outcome() const {
  for (const auto &[number, connection] : _connections)
    if (const auto good = connection->outcome(); !good)
      return Failure{QStringLiteral("connection %1: ").arg(number) + good.failure().text};
  return Done{};
}

} // namespace buttondriver::buttonctl
