// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/panel_changes.h"
#include "simulator/simulation/simulation.h"

#include <QByteArray>

#include <vector>

namespace buttondriver::simulator {

/// How much of everything a page has been sent.
struct FeedPosition {
  bool is_new = true; ///< nothing at all yet
  PanelRevision panel;
  std::uint64_t texts = 0;
  std::uint64_t messages = 0;
  std::uint64_t log = 0;
  SimulationCounters counters;
};

/// What takes a page from one position to the next.
struct LiveUpdate {
  FeedPosition position;
  /// Some rows of a screen each: screen, first row, number of rows, one byte each, after a 1 that says so; then the
  /// pixels, 5-6-5, low byte first.
  std::vector<QByteArray> pixels;
  /// A JSON object of the parts that have changed; empty when none has.
  QByteArray text;
};

/// Gathers what has happened after `from`. Of very many messages and log lines it takes the newest ones only and says
/// how many it has left out.
LiveUpdate gather_update(const Simulation &simulation, const FeedPosition &from);

bool operator==(const FeedPosition &left, const FeedPosition &right);

} // namespace buttondriver::simulator
