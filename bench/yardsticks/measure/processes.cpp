// SPDX-License-Identifier: Apache-2.0
#include "support/panel_daemon.h"
#include "yardsticks/measure/groups.h"
#include "yardsticks/running/resident_memory.h"
#include "yardsticks/running/served.h"
#include "yardsticks/running/waiting.h"

namespace buttondriver::yardsticks {

namespace {

using Kind = Goal::Kind;

/// What is measured of a program while it runs.
struct ProcessValues {
  double start_seconds;
  double idle_bytes;
  double connection_bytes;
};

/// `connections` are opened to a program that has just been started.
ProcessValues values_of(pid_t pid, std::uint16_t port, double start_seconds, int connections) {
  std::vector<std::unique_ptr<Client>> clients;
  const double idle = settled_memory(pid);
  const auto connect = [&] { clients.push_back(std::make_unique<Client>(port)); };
  connect();
  const double with_one = settled_memory(pid);
  while (static_cast<int>(clients.size()) < connections)
    connect();
  const double with_all = settled_memory(pid);
  return {start_seconds, idle, (with_all - with_one) / (connections - 1)};
}

ProcessValues values_of_daemon(const Setting &setting) {
  const bench::PanelDaemon daemon(setting.daemon, 0);
  return values_of(daemon.pid(), daemon.port(), daemon.startSeconds(), setting.scale.connections);
}

ProcessValues values_of_bare(const Setting &setting) {
  constexpr unsigned step_us = 200;
  const std::int64_t start_ns = bench::now_ns();
  bench::ChildProcess process({BUTTONDRIVER_BARE_QT_SERVER}, bench::device_variables());
  const std::uint16_t port = process.waitForPort(step_us);
  const double start_seconds = static_cast<double>(bench::now_ns() - start_ns) * 1e-9;
  return values_of(process.pid(), port, start_seconds, setting.scale.connections);
}

} // namespace

Group measure_processes(const Setting &setting) {
  constexpr double mib = 1024 * 1024;
  constexpr const char *bare = "bare server with Qt";
  Comparison start{"start", "from the start to listening", bare, Unit::seconds, {Kind::at_most_more, 0.03}, {}, {}};
  Comparison idle{"idle_memory", "resident memory, idle", bare, Unit::bytes, {Kind::at_most_more, mib}, {}, {}};
  Comparison connection{
      "connection_memory", "what an idle connection adds", bare, Unit::bytes, {Kind::at_most, 4096}, {}, {}};
  const auto keep = [&](const ProcessValues &values, std::vector<double> Comparison::*side) {
    (start.*side).push_back(values.start_seconds);
    (idle.*side).push_back(values.idle_bytes);
    (connection.*side).push_back(values.connection_bytes);
  };
  alternate(
      setting.scale.starts, [&] { keep(values_of_daemon(setting), &Comparison::ours); },
      [&] { keep(values_of_bare(setting), &Comparison::theirs); });
  return {
      "processes",
      "Start and memory",
      "The daemon, and a program of our own that has nothing but a `QCoreApplication` and a `QTcpServer` that reads "
      "what comes and throws it away. Resident memory is all that is mapped and in use, the libraries' pages "
      "included, once it has stood still for 0.1 s. What a connection adds is from one connection to " +
          std::to_string(setting.scale.connections) +
          ", shared out; the kernel's own memory for the sockets is not in it. Every run starts the programs again.",
      {start, idle, connection}};
}

} // namespace buttondriver::yardsticks
