// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/replay/replay.h"

#include "buttonctl/replay/monotonic_clock.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

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
  if (const auto failed = failure())
    return *failed;
  for (auto entry = _connections.begin(); entry != _connections.end();)
    entry = entry->second->is_closed() ? _connections.erase(entry) : std::next(entry);
  std::unique_ptr<ReplayConnection> &connection = _connections[frame.connection];
  if (!connection)
    connection = std::make_unique<ReplayConnection>(_endpoint);
  connection->send(frame.bytes);
  if (is_last)
    connection->end();
  return Done{};
}

bool ReplayConnections::has_failed() const { return failure().has_value(); }

Outcome<Done> ReplayConnections::finish() {
  QTimer look_again;
  look_again.start(look_again_ms);
  for (;;) {
    if (const auto failed = failure())
      return *failed;
    if (std::all_of(_connections.begin(), _connections.end(),
                    [](const auto &entry) { return entry.second->is_closed(); }))
      return Done{};
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

std::optional<Failure> ReplayConnections::failure() const {
  for (const auto &[number, connection] : _connections)
    if (const auto failed = connection->failure())
      return Failure{QStringLiteral("connection %1: ").arg(number) + failed->text};
  return std::nullopt;
}

int run_replay(const Request &request) {
  const Outcome<Recording> recording = read_recording(request.file);
  if (!recording)
    return report(recording.failure(), exit_bad_usage);
  if (!recording->remark.isEmpty())
    warn(recording->remark);
  if (request.dry_run) {
    for (const RecordedFrame &frame : recording->frames)
      print_line(QString::fromLatin1(frame.bytes.toHex()));
    return exit_done;
  }
  MonotonicClock clock;
  ReplayConnections connections(request.endpoint);
  if (const auto played = play(request.file, *recording, request.speed, clock, connections); !played)
    return report(played.failure(), exit_unreachable);
  if (const auto finished = connections.finish(); !finished)
    return report(finished.failure(), exit_unreachable);
  return exit_done;
}

} // namespace buttondriver::buttonctl
