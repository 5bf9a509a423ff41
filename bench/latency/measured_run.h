// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "latency/load_kind.h"
#include "latency/rows/rows.h"

#include <array>
#include <string>

namespace buttondriver::latency {

/// How long things take in a run, and how long they are waited for.
struct Tempo {
  double warm_up_seconds; ///< from the start of the load to the first measurement
  double seconds;         ///< of measuring
  double step_seconds;    ///< for each of which one share and one rate are told
  double limit_seconds;   ///< that one answer or transfer is waited for
  int blink_half_period_ms;
  int shortest_pause_ms; ///< between two measurements of one kind
  int longest_pause_ms;
};

struct MeasuredRun {
  std::string daemon_name;
  std::string daemon_program;
  double transfer_seconds; ///< that the device takes for a transfer, 0 for an instant one
  LoadKind load;
  std::array<Values, row_count> rows; ///< in the order of RowId
  std::string fault;                  ///< what is wrong with the run, however long anything took; empty for nothing

  const Values &operator[](RowId row) const { return rows[static_cast<std::size_t>(row)]; }
  Values &operator[](RowId row) { return rows[static_cast<std::size_t>(row)]; }
};

/// Whether a run has this row: the share of the device and the rate are a load's, and a device that takes no time is
/// never busy.
bool has_row(const MeasuredRun &run, const Row &row);

/// Starts the run's daemon, loads it, measures, and fills in the rows and the fault.
void measure(MeasuredRun &run, const Tempo &tempo);

} // namespace buttondriver::latency
