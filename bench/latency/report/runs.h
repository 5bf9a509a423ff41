// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "latency/measured_run.h"

#include <algorithm>
#include <string>
#include <vector>

namespace buttondriver::latency {

/// What `key_of` gives for the runs, each once, in the order of their first runs.
template <class KeyOf> auto distinct(const std::vector<MeasuredRun> &runs, KeyOf key_of) {
  std::vector<decltype(key_of(runs.front()))> keys;
  for (const MeasuredRun &run : runs)
    if (std::find(keys.begin(), keys.end(), key_of(run)) == keys.end())
      keys.push_back(key_of(run));
  return keys;
}

inline std::vector<double> devices_of(const std::vector<MeasuredRun> &runs) {
  return distinct(runs, [](const MeasuredRun &run) { return run.transfer_seconds; });
}
inline std::vector<std::string> loads_of(const std::vector<MeasuredRun> &runs) {
  return distinct(runs, [](const MeasuredRun &run) { return std::string(run.load.title); });
}
inline std::vector<std::string> daemons_of(const std::vector<MeasuredRun> &runs) {
  return distinct(runs, [](const MeasuredRun &run) { return run.daemon_name; });
}

/// The runs of one device under one load, in the order of their daemons.
inline std::vector<const MeasuredRun *> runs_of(const std::vector<MeasuredRun> &runs, double transfer_seconds,
                                                const std::string &load_title) {
  std::vector<const MeasuredRun *> found;
  for (const MeasuredRun &run : runs)
    if (run.transfer_seconds == transfer_seconds && run.load.title == load_title)
      found.push_back(&run);
  return found;
}

/// For people: "an instant device", or how long a transfer takes.
inline std::string device_title(double transfer_seconds) {
  if (transfer_seconds == 0)
    return "An instant device";
  return "A device that takes " + text_of(transfer_seconds, Unit::seconds) + " for a transfer";
}

} // namespace buttondriver::latency
