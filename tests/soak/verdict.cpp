// SPDX-License-Identifier: Apache-2.0
#include "soak/verdict.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace buttondriver::soak {

namespace {

/// The first quarter of a run, ten seconds at least, does not count for its slope.
std::vector<Sample> after_warm_up(const std::vector<Sample> &samples) {
  const double length = samples.empty() ? 0 : samples.back().seconds;
  const double warm_up = std::max(length / 4, 10.0);
  std::vector<Sample> rest;
  std::copy_if(samples.begin(), samples.end(), std::back_inserter(rest),
               [warm_up](const Sample &sample) { return sample.seconds > warm_up; });
  return rest;
}

/// KiB a second, of the straight line that lies nearest to the samples.
double memory_slope(const std::vector<Sample> &samples) {
  double mean_seconds = 0;
  double mean_kib = 0;
  for (const Sample &sample : samples) {
    mean_seconds += sample.seconds / static_cast<double>(samples.size());
    mean_kib += static_cast<double>(sample.memory_kib) / static_cast<double>(samples.size());
  }
  double together = 0;
  double alone = 0;
  for (const Sample &sample : samples) {
    const double seconds = sample.seconds - mean_seconds;
    together += seconds * (static_cast<double>(sample.memory_kib) - mean_kib);
    alone += seconds * seconds;
  }
  return alone > 0 ? together / alone : 0;
}

template <class... Values> std::string text(const char *format, Values... values) {
  char buffer[500];
  std::snprintf(buffer, sizeof buffer, format, values...);
  return buffer;
}

double mib(long kib) { return static_cast<double>(kib) / 1024; }

} // namespace

Verdict judge(const SoakRun &run, const Thresholds &thresholds) {
  long most_memory = run.start.memory_kib;
  int most_descriptors = run.start.descriptors;
  for (const Sample &sample : run.samples) {
    most_memory = std::max(most_memory, sample.memory_kib);
    most_descriptors = std::max(most_descriptors, sample.descriptors);
  }
  const std::vector<Sample> steady = after_warm_up(run.samples);
  const double slope = memory_slope(steady);
  const double growth = steady.size() < 2 ? 0 : slope * (steady.back().seconds - steady.front().seconds) / 1024;
  const double p99 = quantile(run.latencies_ms, 0.99);

  Verdict verdict{true, {}};
  verdict.summary =
      text("memory start %.1f MiB, end %.1f MiB, max %.1f MiB, slope after warm-up %+.1f KiB/s; descriptors start %d, "
           "end %d, max %d; ping p50 %.1f ms, p99 %.1f ms, %zu answered or given up, %d of them unanswered; "
           "work left at the end: %.1f s\n",
           mib(run.start.memory_kib), mib(run.end.memory_kib), mib(most_memory), slope, run.start.descriptors,
           run.end.descriptors, most_descriptors, quantile(run.latencies_ms, 0.5), p99, run.latencies_ms.size(),
           run.unanswered, run.drain_seconds);
  const auto demand = [&verdict](bool is_kept, const std::string &otherwise) {
    if (is_kept)
      return;
    verdict.is_flat = false;
    verdict.summary += "NOT FLAT: " + otherwise + "\n";
  };
  demand(run.broken.empty(), run.broken);
  demand(steady.size() >= 2, "the run is too short to tell: it needs more than its warm-up");
  demand(mib(most_memory) <= thresholds.most_memory_mib,
         text("memory reached %.1f MiB, allowed are %.1f", mib(most_memory), thresholds.most_memory_mib));
  demand(growth <= thresholds.most_growth_mib,
         text("memory grew by %.1f MiB after the warm-up, allowed are %.1f", growth, thresholds.most_growth_mib));
  demand(mib(run.end.memory_kib - run.start.memory_kib) <= thresholds.most_left_mib,
         text("%.1f MiB more than at the start were left, allowed are %.1f",
              mib(run.end.memory_kib - run.start.memory_kib), thresholds.most_left_mib));
  demand(most_descriptors - run.start.descriptors <= thresholds.most_descriptors,
         text("%d descriptors more than at the start, allowed are %d", most_descriptors - run.start.descriptors,
              thresholds.most_descriptors));
  demand(run.end.descriptors - run.start.descriptors <= thresholds.most_descriptors_left,
         text("%d descriptors more than at the start were left, allowed are %d",
              run.end.descriptors - run.start.descriptors, thresholds.most_descriptors_left));
  demand(!run.latencies_ms.empty(), "no ping was answered");
  demand(p99 <= thresholds.most_p99_ms,
         text("the slowest in a hundred pings took %.1f ms, allowed are %.1f", p99, thresholds.most_p99_ms));
  demand(run.unanswered <= thresholds.most_unanswered,
         text("%d pings were not answered within ten seconds, allowed are %d", run.unanswered,
              thresholds.most_unanswered));
  if (verdict.is_flat)
    verdict.summary += "flat\n";
  return verdict;
}

} // namespace buttondriver::soak
