// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/measure/groups.h"
#include "yardsticks/running/served.h"

#include "soak/sample.h"

namespace buttondriver::yardsticks {

namespace {

using Kind = Goal::Kind;

/// The goals against the server that logs each line on its own; against the other one the ratio is only told.
struct MessageGoals {
  double rates[3]; ///< in the order of message_kinds()
  double median_ping;
  double slow_ping;
};
constexpr MessageGoals goals = {{1, 2, 2}, 1.2, 1.3};

void add_pings(Served &server, int pings, std::vector<double> &medians, std::vector<double> &slow) {
  const std::vector<double> seconds = server.pingSeconds(pings);
  medians.push_back(soak::quantile(seconds, 0.5));
  slow.push_back(soak::quantile(seconds, 0.99));
}

void compare(Served &daemon, Served &bare, const Scale &scale, const std::string &yardstick, bool has_goals,
             std::vector<Comparison> &rows) {
  const auto goal = [&](double limit) { return has_goals ? Goal{Kind::at_most_times, limit} : Goal{}; };
  const std::string suffix = has_goals ? "" : "_gathered";
  std::size_t place = 0;
  for (const MessageKind &kind : message_kinds(scale)) {
    Comparison row{kind.name + suffix, kind.title, yardstick, Unit::rate, goal(goals.rates[place++]), {}, {}};
    alternate(
        scale.runs, [&] { row.ours.push_back(daemon.secondsOfEach(kind)); },
        [&] { row.theirs.push_back(bare.secondsOfEach(kind)); });
    rows.push_back(row);
  }
  Comparison median{"ping" + suffix, "a ping to its answer", yardstick, Unit::seconds, goal(goals.median_ping), {}, {}};
  Comparison slow{"ping_99" + suffix,
                  "a ping to its answer, 99th percentile",
                  yardstick,
                  Unit::seconds,
                  goal(goals.slow_ping),
                  {},
                  {}};
  alternate(
      scale.runs, [&] { add_pings(daemon, scale.pings, median.ours, slow.ours); },
      [&] { add_pings(bare, scale.pings, median.theirs, slow.theirs); });
  rows.push_back(median);
  rows.push_back(slow);
}

} // namespace

Group measure_messages(const Setting &setting) {
  Group group{
      "messages",
      "Messages",
      "The daemon with a device that takes no time, against a server of our own that does the least that can be "
      "done: it takes the same frames apart with epoll in one thread, logs the same lines, answers pings, and "
      "draws nothing. Once that server writes each line of its log by itself, as a plain server does; once it "
      "gathers them, as the daemon does, so that its log costs next to nothing. Both logs go to a pipe that is "
      "read. One client sends the messages in a row; the time ends when all are drawn and logged and a ping "
      "after them is answered. Pings are sent one by one.",
      {}};
  const std::unique_ptr<Served> daemon = serve_daemon(setting.daemon);
  compare(*daemon, *serve_bare(false), setting.scale, "bare server", true, group.rows);
  compare(*daemon, *serve_bare(true), setting.scale, "bare server, log gathered", false, group.rows);
  return group;
}

Group measure_connections(const Setting &setting) {
  Group group{"connections",
              "Many connections",
              "The daemon with " + std::to_string(setting.scale.connections) +
                  " connections, of which one sends and the others have had one answer each, against the daemon with "
                  "that one alone.",
              {}};
  constexpr double goal = 1.1;
  const std::unique_ptr<Served> many = serve_daemon(setting.daemon);
  const std::unique_ptr<Served> one = serve_daemon(setting.daemon);
  many->fillUp(setting.scale.connections);
  for (const MessageKind &kind : message_kinds(setting.scale)) {
    if (kind.name == std::string("picture"))
      continue;
    Comparison row{kind.name, kind.title, "one connection", Unit::rate, {Kind::at_most_times, goal}, {}, {}};
    alternate(
        setting.scale.runs, [&] { row.ours.push_back(many->secondsOfEach(kind)); },
        [&] { row.theirs.push_back(one->secondsOfEach(kind)); });
    group.rows.push_back(row);
  }
  return group;
}

} // namespace buttondriver::yardsticks
