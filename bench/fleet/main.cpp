// SPDX-License-Identifier: Apache-2.0
// Measures the bridge between a broker and many panels, and prints chapters of a page in Markdown.
// bench/README.md explains the options.
//
// Exit status: 0 everything was measured and nothing was lost, however long it took; 1 otherwise; 2 a bad command line.

#include "fleet/options.h"
#include "fleet/report/chapters.h"
#include "yardsticks/machine.h"
#include "yardsticks/report/table.h"

#include <cstdio>
#include <exception>
#include <sys/resource.h>

namespace {

using namespace buttondriver;
using namespace buttondriver::fleet;

/// A program may usually have as many descriptors as it asks for, and not as many as hundreds of panels take.
void allow_many_descriptors() {
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

struct Measured {
  std::vector<SteadyRun> ours;
  std::vector<SteadyRun> theirs;
  std::vector<Disturbance> disturbances;
};

/// Both sides take turns, and the one that comes first changes.
Measured measure(const Setting &setting) {
  Measured measured;
  for (int round = 0; round < setting.rounds; ++round) {
    std::fprintf(stderr, "even load, round %d\n", round + 1);
    for (const bool is_ours : {round % 2 == 0, round % 2 != 0})
      if (is_ours)
        measured.ours.push_back(run_with_bridge(setting));
      else
        measured.theirs.push_back(run_with_bare_subscriber(setting));
  }
  std::fputs("coming and going\n", stderr);
  measured.disturbances = run_disturbed(setting);
  return measured;
}

bool is_sound(const std::vector<yardsticks::Group> &groups, const std::vector<Disturbance> &disturbances) {
  bool is_good = true;
  for (const yardsticks::Group &group : groups)
    for (const yardsticks::Comparison &row : group.rows)
      if (const std::string fault = yardsticks::fault_of(row); !fault.empty()) {
        std::fprintf(stderr, "FAULT: %s: %s\n", row.name.c_str(), fault.c_str());
        is_good = false;
      }
  for (const Disturbance &disturbance : disturbances)
    if (disturbance.wrong > 0) {
      std::fprintf(stderr, "FAULT: %s: %zu panels are wrong\n", disturbance.name.c_str(), disturbance.wrong);
      is_good = false;
    }
  return is_good;
}

} // namespace

int main(int argc, char **argv) {
  const std::optional<Options> options = parse_options({argv + 1, argv + argc});
  if (!options) {
    std::fputs(usage().c_str(), stderr);
    return 2;
  }
  allow_many_descriptors();
  const double busy_before = yardsticks::busy_share(0.5);
  Measured measured;
  try {
    measured = measure(options->setting);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "buttondriver_fleet: %s\n", error.what());
    return 1;
  }
  const std::vector<yardsticks::Group> groups = {steady_group(options->setting, measured.ours, measured.theirs),
                                                 memory_group(options->setting, measured.ours)};
  for (const yardsticks::Group &group : groups)
    std::printf("%s\n", yardsticks::markdown(group).c_str());
  std::printf("%s\n## Machine\n\n%s. Before the first run other programs kept its processors busy for %.0f %% of their "
              "time.\n",
              disturbed_chapter(options->setting, measured.disturbances).c_str(), yardsticks::machine_text().c_str(),
              busy_before * 100);
  if (!options->csv_file.empty() && !yardsticks::write_csv(options->csv_file, groups)) {
    std::fputs("buttondriver_fleet: a file could not be written\n", stderr);
    return 1;
  }
  // A few panels take less memory than a process has more or less at times: that is told and not looked at.
  return is_sound({groups.front()}, measured.disturbances) ? 0 : 1;
}
