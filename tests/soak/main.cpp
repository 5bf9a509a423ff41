// SPDX-License-Identifier: Apache-2.0
// Loads a running daemon with everything at once, watches it meanwhile, and prints whether it stayed flat.
//
//   soak_load PID ROOT SECONDS CSV SVG PICTURE [LOAD...]
//
// PID is the daemon's, ROOT the folder that its files lie under, PICTURE the snapshot that it writes when it is asked
// to by SIGUSR1; it is not there yet. An empty PICTURE: it writes none. Without LOAD all loads run. Exit status: 0
// flat, 1 not, 2 a bad command line, or no daemon.

#include "soak/load/loads.h"
#include "soak/load/prober.h"
#include "soak/verdict.h"
#include "soak/watched_process.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace buttondriver::soak;
using Clock = std::chrono::steady_clock;

/// A daemon that takes more than this would take the machine with it: then the run ends.
constexpr long most_memory_kib = 1024L * 1024;
constexpr std::chrono::seconds longest_drain{300};

double seconds_since(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

Sample sample_of(const WatchedProcess &daemon, const Target &target, double seconds) {
  Sample sample;
  sample.seconds = seconds;
  sample.memory_kib = daemon.memoryKib();
  sample.descriptors = daemon.descriptors();
  const auto [unread, unsent] = daemon.waiting();
  sample.unread_kib = unread;
  sample.unsent_kib = unsent;
  sample.sent_mib = static_cast<double>(target.bytes_sent.load()) / (1024 * 1024);
  return sample;
}

/// A sample a second, until the time is over or the daemon is lost.
void watch(const WatchedProcess &daemon, const Target &target, Prober &prober, int seconds, SoakRun &run) {
  const auto start = Clock::now();
  for (int second = 1; second <= seconds && run.broken.empty(); ++second) {
    std::this_thread::sleep_until(start + std::chrono::seconds(second));
    Sample sample = sample_of(daemon, target, seconds_since(start));
    const std::vector<double> latencies = prober.takeLatencies();
    sample.answers = static_cast<int>(latencies.size());
    sample.median_ms = quantile(latencies, 0.5);
    sample.slowest_ms = quantile(latencies, 1);
    run.samples.push_back(sample);
    run.latencies_ms.insert(run.latencies_ms.end(), latencies.begin(), latencies.end());
    if (sample.memory_kib == 0)
      run.broken = "the daemon has gone";
    else if (sample.memory_kib > most_memory_kib)
      run.broken = "the daemon took more than 1024 MiB, and the run was ended";
  }
}

/// Waits until the daemon reads nothing any more.
void wait_until_idle(const WatchedProcess &daemon, Clock::time_point limit) {
  constexpr std::chrono::milliseconds step{500};
  constexpr double idle_seconds = 0.1;
  double before = daemon.processorSeconds();
  while (daemon.isAlive() && Clock::now() < limit) {
    std::this_thread::sleep_for(step);
    const double now = daemon.processorSeconds();
    if (now - before < idle_seconds)
      return;
    before = now;
  }
}

/// Waits until all that was accepted is done. False when that takes too long.
bool drain_connections(const WatchedProcess &daemon, int descriptors_at_start, double &seconds) {
  const auto start = Clock::now();
  // A connection stays until all that its client sent is with the device, but for less than a tenth of a second of it.
  while (daemon.isAlive() && daemon.descriptors() > descriptors_at_start && Clock::now() - start < longest_drain)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  seconds = seconds_since(start);
  return daemon.isAlive() && daemon.descriptors() <= descriptors_at_start;
}

/// As above, from a daemon that then writes a picture of the panel.
bool drain(const WatchedProcess &daemon, int pid, const std::string &picture, double &seconds) {
  const auto start = Clock::now();
  wait_until_idle(daemon, start + longest_drain);
  ::kill(pid, SIGUSR1);
  while (daemon.isAlive() && !std::filesystem::exists(picture) && Clock::now() - start < longest_drain)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  seconds = seconds_since(start);
  return std::filesystem::exists(picture);
}

SoakRun soak(const WatchedProcess &daemon, Target &target, int seconds, const std::vector<Load> &loads) {
  SoakRun run;
  Prober prober;
  run.start = sample_of(daemon, target, 0);
  std::vector<std::thread> threads;
  threads.emplace_back([&] { prober.run(target); });
  for (const Load &load : loads)
    threads.emplace_back(load.run, std::ref(target));
  watch(daemon, target, prober, seconds, run);
  target.stop = true;
  for (std::thread &thread : threads)
    thread.join();
  run.unanswered = prober.unanswered();
  return run;
}

/// The loads of these names, all of them without a name; none when there is no such load.
std::vector<Load> chosen_loads(char **begin, char **end) {
  if (begin == end)
    return all_loads();
  std::vector<Load> chosen;
  for (char **name = begin; name != end; ++name) {
    const auto load = std::find_if(all_loads().begin(), all_loads().end(),
                                   [name](const Load &any) { return std::strcmp(any.name, *name) == 0; });
    if (load == all_loads().end())
      return {};
    chosen.push_back(*load);
  }
  return chosen;
}

} // namespace

int main(int argc, char **argv) {
  const std::vector<Load> loads = argc >= 7 ? chosen_loads(argv + 7, argv + argc) : std::vector<Load>();
  const int pid = argc >= 7 ? std::atoi(argv[1]) : 0;
  const int seconds = argc >= 7 ? std::atoi(argv[3]) : 0;
  if (loads.empty() || pid <= 0 || seconds <= 0) {
    std::fputs("usage: soak_load PID ROOT SECONDS CSV SVG PICTURE [LOAD...]\nloads:", stderr);
    for (const Load &load : all_loads())
      std::fprintf(stderr, " %s", load.name);
    std::fputs("\n", stderr);
    return 2;
  }
  const WatchedProcess daemon(pid);
  Target target;
  target.root = argv[2];
  const auto start = Clock::now();
  while (target.port == 0 && daemon.isAlive() && seconds_since(start) < 10) {
    target.port = daemon.listeningPort();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  if (target.port == 0) {
    std::fputs("soak_load: no daemon listens\n", stderr);
    return 2;
  }
  SoakRun run = soak(daemon, target, seconds, loads);
  const std::string picture = argv[6];
  const bool is_done = picture.empty() ? drain_connections(daemon, run.start.descriptors, run.drain_seconds)
                                       : drain(daemon, pid, picture, run.drain_seconds);
  if (!is_done && run.broken.empty())
    run.broken = "the work was not done five minutes after the loads had gone";
  run.end = sample_of(daemon, target, seconds + run.drain_seconds);
  if (!write_csv(argv[4], run.samples) || !write_plot(argv[5], run.samples))
    std::fputs("soak_load: the curves could not be written\n", stderr);
  const Verdict verdict = judge(run, Thresholds());
  std::printf("sent %.1f MiB on %lu connections\n%s", run.end.sent_mib,
              static_cast<unsigned long>(target.connections.load()), verdict.summary.c_str());
  return verdict.is_flat ? 0 : 1;
}
