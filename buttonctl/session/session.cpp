// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/session/session.h"

#include "buttonctl/session/console.h"
#include "buttonctl/session/framed_ping.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace buttondriver::buttonctl {

namespace {

QString milliseconds(double value) { return QString::number(value, 'f', 3) + QLatin1String(" ms"); }

QString summary(const std::vector<double> &round_trips) {
  const auto [shortest, longest] = std::minmax_element(round_trips.begin(), round_trips.end());
  const double sum = std::accumulate(round_trips.begin(), round_trips.end(), 0.0);
  return QStringLiteral("%1 answers: shortest %2, average %3, longest %4")
      .arg(round_trips.size())
      .arg(milliseconds(*shortest), milliseconds(sum / static_cast<double>(round_trips.size())),
           milliseconds(*longest));
}

} // namespace

Outcome<Done> Session::start() { return _dry_run ? Outcome<Done>(Done{}) : _connection.open(); }

Outcome<Done> Session::perform(const Steps &steps) {
  std::vector<double> round_trips;
  for (const Step &step : steps) {
    if (_dry_run) {
      print_line(QString::fromLatin1(step.bytes.toHex()));
      continue;
    }
    if (step.kind == Step::Kind::send) {
      Outcome<Done> sent = _connection.send(step.bytes);
      if (!sent)
        return sent;
      continue;
    }
    const Outcome<double> round_trip = _connection.ping(step.bytes);
    if (!round_trip)
      return round_trip.failure();
    round_trips.push_back(*round_trip);
    print_line(QStringLiteral("answer from %1: %2").arg(_connection.peer(), milliseconds(*round_trip)));
  }
  if (round_trips.size() > 1)
    print_line(summary(round_trips));
  return Done{};
}

Outcome<Done> Session::settle() {
  if (_dry_run)
    return Done{};
  const Outcome<double> round_trip = _connection.ping(framed_ping());
  if (!round_trip)
    return round_trip.failure();
  return Done{};
}

Outcome<Done> Session::finish() { return _dry_run ? Outcome<Done>(Done{}) : _connection.close(); }

} // namespace buttondriver::buttonctl
