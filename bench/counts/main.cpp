// SPDX-License-Identifier: Apache-2.0
// Counts what one message costs the built daemon, and prints it as a table in Markdown, or holds it against a table.
// bench/README.md explains the options.
//
// Exit status: 0 counted, and nothing is dearer than the table says; 1 something is; 2 a bad command line, or it cannot
// be counted; 77 the table is for another build, or valgrind is missing.

#include "counts/build.h"
#include "counts/options.h"
#include "counts/run/counting.h"
#include "counts/table/comparison.h"
#include "support/temporary_folder.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <unistd.h>

namespace {

using namespace buttondriver::counts;

constexpr int skipped = 77;

int skip(const std::string &why) {
  std::printf("needs %s\n", why.c_str());
  return skipped;
}

int hold(const Table &expected, const Table &seen) {
  const Comparison comparison = compare(expected, seen);
  for (const std::string &line : comparison.notes)
    std::printf("cheaper: %s\n", line.c_str());
  for (const std::string &line : comparison.faults)
    std::printf("FAILED: %s\n", line.c_str());
  if (!comparison.notes.empty() || !comparison.faults.empty())
    std::printf("When that is meant to be, renew the table: cmake --build build/qt6 --target renew_counts\n");
  return comparison.faults.empty() ? 0 : 1;
}

int run(const Options &options) {
  const bool is_held = !options.expected_file.empty();
  const Table expected = is_held ? table_of(buttondriver::test::read_file(options.expected_file)) : Table{};
  if (is_held && expected.build != this_build())
    return skip("the build that the table is for: " + expected.build + "; this one is " + this_build());
  if (::access(BUTTONDRIVER_COUNTS_VALGRIND, X_OK) != 0)
    return skip("valgrind");
  const bool is_own = options.daemon.empty();
  const Table table{is_own ? this_build() : options.daemon,
                    count_all(is_own ? BUTTONDRIVER_COUNTS_DAEMON : options.daemon, options.rows)};
  std::fputs(markdown_of(table).c_str(), stdout);
  if (!options.csv_file.empty() && !(std::ofstream(options.csv_file) << csv_of(table)).flush()) {
    std::fprintf(stderr, "buttondriver_counts: %s cannot be written\n", options.csv_file.c_str());
    return 2;
  }
  return is_held ? hold(expected, table) : 0;
}

} // namespace

int main(int argc, char **argv) {
  const std::optional<Options> options = parse_options({argv + 1, argv + argc});
  if (!options) {
    std::fputs(usage().c_str(), stderr);
    return 2;
  }
  try {
    return run(*options);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "buttondriver_counts: %s\n", error.what());
    return 2;
  }
}
