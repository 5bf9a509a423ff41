// SPDX-License-Identifier: Apache-2.0
#include "fleet/report/chapters.h"

#include <algorithm>
#include <functional>
#include <sstream>

namespace buttondriver::fleet {

using yardsticks::Comparison;
using yardsticks::Goal;
using yardsticks::Group;
using yardsticks::Unit;

namespace {

constexpr double longest_p99_seconds = 0.05;
constexpr double most_bytes_per_panel = 50 * 1024;

using Value = std::function<double(const SteadyRun &)>;

std::vector<double> values_of(const std::vector<SteadyRun> &runs, const Value &value) {
  std::vector<double> values;
  std::transform(runs.begin(), runs.end(), std::back_inserter(values), value);
  return values;
}

} // namespace

Group steady_group(const Setting &setting, const std::vector<SteadyRun> &ours, const std::vector<SteadyRun> &theirs) {
  double slowest = setting.commands_per_second;
  for (const auto *runs : {&ours, &theirs})
    for (const SteadyRun &run : *runs)
      slowest = std::min(slowest, run.rate);
  std::ostringstream introduction;
  introduction << setting.commands_per_second << " commands in a second for " << setting.panels
               << " panels, published evenly for " << setting.seconds << " s, retained and with quality of service 1"
               << " (in the slowest run there were " << static_cast<long>(slowest)
               << " a second). Half of them are lines"
               << " of text that tell when they were published, the others lamps. Ours: from publishing to the socket"
               << " of a panel. Theirs: to a program that subscribes with libmosquitto and does nothing with what"
               << " comes. Publisher, broker, bridge and panels share the processors of one machine.";
  Group group{"steady", "Even load", introduction.str(), {}};
  const auto add = [&](const char *name, const char *title, const Goal &goal, const Value &value) {
    group.rows.push_back(
        {name, title, "bare subscriber", Unit::seconds, goal, values_of(ours, value), values_of(theirs, value)});
  };
  add("median", "a line of text, median", {}, [](const SteadyRun &run) { return run.delays.median; });
  add("p99", "99th percentile", {Goal::Kind::at_most, longest_p99_seconds},
      [](const SteadyRun &run) { return run.delays.p99; });
  add("longest", "longest", {}, [](const SteadyRun &run) { return run.delays.longest; });
  add("receiver", "processor time of the receiver for a command", {},
      [](const SteadyRun &run) { return run.receiver_seconds; });
  add("broker", "processor time of the broker for a command", {},
      [](const SteadyRun &run) { return run.broker_seconds; });
  return group;
}

Group memory_group(const Setting &setting, const std::vector<SteadyRun> &ours) {
  int threads = 0;
  for (const SteadyRun &run : ours)
    threads = std::max(threads, run.threads);
  std::ostringstream introduction;
  introduction << "What each panel adds to the bridge, after that load: proportional set size with " << setting.panels
               << " panels, less that with one. Theirs is what the broker takes to keep the same topics. The bridge"
               << " had " << threads << (threads == 1 ? " thread." : " threads.");
  Group group{"memory", "Memory", introduction.str(), {}};
  group.rows.push_back({"panel",
                        "memory for a panel",
                        "the broker",
                        Unit::bytes,
                        {Goal::Kind::at_most, most_bytes_per_panel},
                        values_of(ours, [](const SteadyRun &run) { return run.bytes_per_panel; }),
                        values_of(ours, [](const SteadyRun &run) { return run.broker_bytes_per_panel; })});
  return group;
}

std::string disturbed_chapter(const Setting &setting, const std::vector<Disturbance> &disturbances) {
  std::ostringstream text;
  text << "## Coming and going\n\nThe load is the same. A panel that goes forgets what it showed, as one does that is "
       << "switched off. In the end the lamps and lines of all " << setting.panels
       << " panels are compared with what was published last.\n\n"
       << "| What happens | Commands meanwhile | Until all panels are right | Panels that are wrong |\n"
       << "|---|--:|--:|--:|\n";
  text.setf(std::ios::fixed);
  text.precision(1);
  for (const Disturbance &disturbance : disturbances)
    text << "| " << disturbance.what << " | " << disturbance.commands << " | " << disturbance.seconds << " s | "
         << (disturbance.wrong == 0 ? "0" : "**" + std::to_string(disturbance.wrong) + "**") << " |\n";
  return text.str();
}

} // namespace buttondriver::fleet
