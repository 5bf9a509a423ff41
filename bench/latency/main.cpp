// SPDX-License-Identifier: Apache-2.0
// Measures what a person at a panel with a slow device feels while other clients keep the daemon busy, and prints it as
// tables in Markdown. bench/README.md explains the options.
//
// Exit status: 0 every row was measured and every command arrived, however long that took; 1 something did not come;
// 2 a bad command line, or a daemon cannot be started.

#include "latency/options.h"
#include "latency/report/plot.h"
#include "latency/report/runs.h"
#include "latency/report/table.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

namespace {

using namespace buttondriver::latency;

/// A thread for each processor that never rests, until this object goes.
class Burners {
public:
  explicit Burners(bool is_wanted) {
    for (unsigned i = 0; is_wanted && i < std::thread::hardware_concurrency(); ++i)
      _threads.emplace_back([this] {
        while (!_is_over) {
        }
      });
  }
  ~Burners() {
    _is_over = true;
    for (std::thread &thread : _threads)
      thread.join();
  }

private:
  std::atomic<bool> _is_over{false};
  std::vector<std::thread> _threads;
};

std::string machine_load() {
  double load = 0;
  ::getloadavg(&load, 1);
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", load);
  return text;
}

/// The daemons come one after the other under the same load, so that what else the machine does hits them alike.
std::vector<MeasuredRun> measure_all(const Options &options) {
  std::vector<MeasuredRun> runs;
  for (const double transfer_seconds : options.transfer_seconds)
    for (const LoadKind &load : options.loads)
      for (const NamedProgram &daemon : options.daemons) {
        std::fprintf(stderr, "%s, %s, %s\n", device_title(transfer_seconds).c_str(), load.title,
                     daemon.program.c_str());
        MeasuredRun run{daemon.name, daemon.program, transfer_seconds, load, {}, {}};
        measure(run, options.tempo);
        if (!run.fault.empty())
          std::fprintf(stderr, "FAULT: %s\n", run.fault.c_str());
        runs.push_back(run);
      }
  return runs;
}

} // namespace

int main(int argc, char **argv) {
  const std::optional<Options> options = parse_options({argv + 1, argv + argc});
  if (!options) {
    std::fputs(usage().c_str(), stderr);
    return 2;
  }
  std::vector<MeasuredRun> runs;
  const std::string load_before = machine_load();
  try {
    const Burners burners(options->is_busy);
    runs = measure_all(*options);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "buttondriver_latency: %s\n", error.what());
    return 2;
  }
  std::printf("%s\n%u processors%s. Their load average was %s before the first run and %s after the last.\n",
              markdown(runs).c_str(), std::thread::hardware_concurrency(),
              options->is_busy ? ", each kept busy by a thread besides" : "", load_before.c_str(),
              machine_load().c_str());
  int status = 0;
  for (const MeasuredRun &run : runs)
    status |= run.fault.empty() ? 0 : 1;
  if ((!options->svg_file.empty() && !write_plot(options->svg_file, runs)) ||
      (!options->csv_file.empty() && !write_csv(options->csv_file, runs))) {
    std::fputs("buttondriver_latency: a file could not be written\n", stderr);
    status = 1;
  }
  return status;
}
