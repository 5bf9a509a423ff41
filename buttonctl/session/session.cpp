// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/session/session.h"

#include "buttonctl/session/console.h"
#include "buttonctl/session/framed_ping.h"
#include "buttonctl/session/round_trips.h"

#include <QEventLoop>
#include <QTimer>

#include <vector>

namespace buttondriver::buttonctl {

namespace {

void wait(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

} // namespace

Outcome<Done> Session::start() { return _dry_run ? Outcome<Done>(Done{}) : _connection.open(); }

Outcome<Done> Session::perform(const Steps &steps) {
  const bool is_for_json = !steps.empty() && steps.front().kind == Step::Kind::ping_for_json;
  if (is_for_json && !_dry_run)
    return pingForJson(steps);
  std::vector<double> round_trips;
  for (const Step &step : steps) {
    if (step.kind == Step::Kind::wait) {
      if (!_dry_run)
        wait(step.wait_ms);
      continue;
    }
    if (_dry_run) {
      print_line(QString::fromLatin1(step.bytes.toHex()));
      continue;
    }
    const Outcome<Done> performed =
        step.kind == Step::Kind::send ? _connection.send(step.bytes) : ping(step, round_trips);
    if (!performed)
      return performed;
  }
  if (round_trips.size() > 1)
    print_line(round_trips_text(round_trips));
  return Done{};
}

Outcome<Done> Session::ping(const Step &step, std::vector<double> &round_trips) {
  const Outcome<double> round_trip = _connection.ping(step.bytes);
  if (!round_trip)
    return round_trip.failure();
  round_trips.push_back(*round_trip);
  if (step.kind == Step::Kind::ping)
    print_line(QStringLiteral("answer from %1: %2").arg(_connection.peer(), milliseconds_text(*round_trip)));
  return Done{};
}

Outcome<Done> Session::pingForJson(const Steps &steps) {
  std::vector<double> round_trips;
  int sent = 0;
  Outcome<Done> pinged = Done{};
  for (auto step = steps.begin(); step != steps.end() && pinged; ++step) {
    ++sent;
    pinged = ping(*step, round_trips);
  }
  print_line(round_trips_json(_endpoint, sent, round_trips));
  return pinged;
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
