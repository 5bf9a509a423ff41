// SPDX-License-Identifier: Apache-2.0
#include "files/owned_descriptor.h"
#include "soak/verdict.h"
#include "soak/watched_process.h"

#include <gtest/gtest.h>

#include <functional>
#include <unistd.h>

namespace buttondriver::soak {
namespace {

/// A minute in which nothing moves.
SoakRun flat_run() {
  SoakRun run;
  run.start = {0, 20 * 1024, 12, 0, 0, 0, 0, 0, 0};
  for (int second = 1; second <= 60; ++second)
    run.samples.push_back({double(second), 30 * 1024, 40, 0, 0, 0, 50, 1, 2});
  run.end = {60, 25 * 1024, 12, 0, 0, 0, 0, 0, 0};
  run.latencies_ms = std::vector<double>(3000, 1.5);
  return run;
}

TEST(VerdictTest, calls_a_run_flat_in_which_nothing_moves) {
  const Verdict verdict = judge(flat_run(), {});
  EXPECT_TRUE(verdict.is_flat) << verdict.summary;
  EXPECT_EQ(verdict.summary,
            "memory start 20.0 MiB, end 25.0 MiB, max 30.0 MiB, slope after warm-up +0.0 KiB/s; descriptors start 12, "
            "end 12, max 40; ping p50 1.5 ms, p99 1.5 ms, 3000 answered or given up, 0 of them unanswered; work left "
            "at the end: 0.0 s\nflat\n");
}

TEST(VerdictTest, does_not_count_growth_within_the_warm_up) {
  SoakRun run = flat_run();
  for (std::size_t second = 0; second < 15; ++second)
    run.samples[second].memory_kib = static_cast<long>(20 * 1024 + second * 600);
  EXPECT_TRUE(judge(run, {}).is_flat);
}

struct Fault {
  const char *name;
  std::function<void(SoakRun &)> happens;
  const char *message;
};

std::ostream &operator<<(std::ostream &stream, const Fault &row) { return stream << row.name; }

class FaultTest : public testing::TestWithParam<Fault> {};

TEST_P(FaultTest, makes_a_run_that_is_not_flat) {
  SoakRun run = flat_run();
  GetParam().happens(run);
  const Verdict verdict = judge(run, {});
  EXPECT_FALSE(verdict.is_flat);
  EXPECT_NE(verdict.summary.find(std::string("\nNOT FLAT: ") + GetParam().message), std::string::npos)
      << verdict.summary;
}

INSTANTIATE_TEST_SUITE_P(
    Of, FaultTest,
    testing::Values(Fault{"growth",
                          [](SoakRun &run) {
                            for (Sample &sample : run.samples)
                              sample.memory_kib += static_cast<long>(sample.seconds * 256);
                          },
                          "memory grew by 11.0 MiB after the warm-up, allowed are 8.0"},
                    Fault{"peak", [](SoakRun &run) { run.samples[3].memory_kib = 300 * 1024; },
                          "memory reached 300.0 MiB, allowed are 256.0"},
                    Fault{"memory_left", [](SoakRun &run) { run.end.memory_kib = 100 * 1024; },
                          "80.0 MiB more than at the start were left, allowed are 64.0"},
                    Fault{"many_descriptors", [](SoakRun &run) { run.samples[3].descriptors = 77; },
                          "65 descriptors more than at the start, allowed are 64"},
                    Fault{"descriptors_left", [](SoakRun &run) { run.end.descriptors = 17; },
                          "5 descriptors more than at the start were left, allowed are 4"},
                    Fault{"slow_answers", [](SoakRun &run) { std::fill_n(run.latencies_ms.begin(), 40, 2500.0); },
                          "the slowest in a hundred pings took 2500.0 ms, allowed are 2000.0"},
                    Fault{"unanswered", [](SoakRun &run) { run.unanswered = 1; },
                          "1 pings were not answered within ten seconds, allowed are 0"},
                    Fault{"no_answer", [](SoakRun &run) { run.latencies_ms.clear(); }, "no ping was answered"},
                    Fault{"lost_daemon", [](SoakRun &run) { run.broken = "the daemon has gone"; },
                          "the daemon has gone"},
                    Fault{"short_run", [](SoakRun &run) { run.samples.resize(10); }, "the run is too short to tell"}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(QuantileTest, is_the_value_below_which_that_part_lies) {
  EXPECT_EQ(quantile({5, 1, 4, 2, 3}, 0), 1);
  EXPECT_EQ(quantile({5, 1, 4, 2, 3}, 0.5), 3);
  EXPECT_EQ(quantile({5, 1, 4, 2, 3}, 1), 5);
  EXPECT_EQ(quantile({}, 0.5), 0);
}

TEST(WatchedProcessTest, sees_memory_and_descriptors_of_a_process) {
  const WatchedProcess own(::getpid());
  EXPECT_GT(own.memoryKib(), 500);
  const int before = own.descriptors();
  const OwnedDescriptor another(::dup(STDOUT_FILENO));
  EXPECT_EQ(own.descriptors(), before + 1);
}

TEST(WatchedProcessTest, missing_process_is_not_alive) { EXPECT_FALSE(WatchedProcess(-1).isAlive()); }

} // namespace
} // namespace buttondriver::soak
