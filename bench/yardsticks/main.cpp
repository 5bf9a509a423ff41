// SPDX-License-Identifier: Apache-2.0
// Measures the daemon and the panel library against yardsticks, and prints chapters of a page in Markdown.
// bench/README.md explains the options.
//
// Exit status: 0 everything was measured, however fast it was; 1 something was not; 2 a bad command line.

#include "yardsticks/machine.h"
#include "yardsticks/options.h"
#include "yardsticks/report/plot.h"
#include "yardsticks/report/table.h"

#include <QGuiApplication>

#include <cstdio>
#include <exception>
#include <sys/resource.h>

namespace {

using namespace buttondriver::yardsticks;

/// A program may usually have as many descriptors as it asks for, and not as many as hundreds of connections take.
void allow_many_descriptors() {
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

/// Throws std::runtime_error when a program does not do its part.
std::vector<Group> measure_all(const Options &options) {
  std::vector<Group> groups;
  for (const GroupKind &kind : options.groups) {
    std::fprintf(stderr, "%s\n", kind.name);
    groups.push_back(kind.measure(options.setting));
  }
  return groups;
}

bool are_values_sound(const std::vector<Group> &groups) {
  bool is_sound = true;
  for (const Group &group : groups)
    for (const Comparison &row : group.rows)
      if (const std::string fault = fault_of(row); !fault.empty()) {
        std::fprintf(stderr, "FAULT: %s: %s\n", group.name.c_str(), fault.c_str());
        is_sound = false;
      }
  return is_sound;
}

bool write_files(const Options &options, const std::vector<Group> &groups) {
  const bool is_csv_written = options.csv_file.empty() || write_csv(options.csv_file, groups);
  const bool are_plots_written = options.svg_beginning.empty() || write_plots(options.svg_beginning, groups);
  if (!is_csv_written || !are_plots_written)
    std::fputs("buttondriver_yardsticks: a file could not be written\n", stderr);
  return is_csv_written && are_plots_written;
}

} // namespace

int main(int argc, char **argv) {
  const std::optional<Options> options = parse_options({argv + 1, argv + argc});
  if (!options) {
    std::fputs(usage().c_str(), stderr);
    return 2;
  }
  allow_many_descriptors();
  // Nothing is shown: an image can be drawn on without a screen.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  const double seconds_of_looking = options->is_quick ? 0.1 : 1;
  const double busy_before = busy_share(seconds_of_looking);
  std::vector<Group> groups;
  try {
    groups = measure_all(*options);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "buttondriver_yardsticks: %s\n", error.what());
    return 1;
  }
  for (const Group &group : groups)
    std::printf("%s\n", markdown(group).c_str());
  const double busy_after = busy_share(seconds_of_looking);
  std::printf(
      "## Machine\n\n%s. Before the first run other programs kept its processors busy for %.0f %% of their time, "
      "after the last one for %.0f %%; on a busy machine the ratios are others.\n",
      machine_text().c_str(), busy_before * 100, busy_after * 100);
  constexpr double much = 0.1;
  if (busy_before > much || busy_after > much)
    std::fputs("The machine is busy with other things: do not keep these figures.\n", stderr);
  return are_values_sound(groups) && write_files(*options, groups) ? 0 : 1;
}
