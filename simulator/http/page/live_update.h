// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/panel_changes.h"
#include "simulator/simulation/simulation.h"

#include <QByteArray>

#include <map>
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
  std::map<qint32, qint32> blinking; ///< the times of the buttons that blink
};

/// What takes a page from one position to the next.
struct LiveUpdate {
  FeedPosition position;
  /// Some rows of a screen each: screen, first row, number of rows, one byte each, after a 1 that says so; then the
  /// pixels, 5-6-5, low byte first.
  std::vector<QByteArray> pixels;
  /// A JSON object of the parts that have changed; empty when none has.
  QByteArray text;
  /// How many messages or log lines are among them, whichever are more.
  std::size_t entry_count = 0;
};

/// The newest entries that one update takes of each list, once a page has been given the whole list.
inline constexpr std::size_t most_entries = 200;

/// Whether an update takes messages and log lines too, or leaves them for a later one.
enum class Entries : std::uint8_t { taken, left };

/// Gathers what has happened after `from`. Of very many messages and log lines it takes the newest ones only and says
/// how many it has left out. A position that is new gets them in any case.
LiveUpdate gather_update(Simulation &simulation, const FeedPosition &from, Entries entries);

bool operator==(const FeedPosition &left, const FeedPosition &right);

} // namespace buttondriver::simulator
