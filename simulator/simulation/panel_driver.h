// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/daemon.h"
#include "outcome/outcome.h"
#include "simulator/device/panel_state.h"
#include "simulator/reading/screen_font.h"
#include "simulator/simulation/simulation_counters.h"
#include "simulator/traffic/message_observer.h"

#include <functional>

namespace buttondriver::simulator {

/// What drives the virtual panel: a daemon in this program, or another program. Lives on the main thread.
class PanelDriver {
public:
  virtual ~PanelDriver() = default;

  virtual Outcome<Done> start() = 0;
  /// Calls `then`, on any thread, with what the panel shows once all work is done that this program knows of.
  virtual void whenWorkIsDone(std::function<void(const PanelState &)> then) = 0;
  /// The same, with the font that texts are drawn with by then.
  virtual void whenTextsCanBeRead(std::function<void(const PanelState &, const ScreenFont &)> then) = 0;
  /// Fills in what it knows.
  virtual void count(SimulationCounters &counters) const = 0;

  /// The daemon in this program, and the messages that its clients have sent; null when another program drives.
  virtual Daemon *daemon() { return nullptr; }
  virtual const MessageObserver *messages() const { return nullptr; }
  /// Has the panel made as it is after the start, and forgets messages, those of connections that are closed by now
  /// too. Calls `then`, perhaps at once, when that is under way. Only with a daemon in this program.
  virtual void reset(const std::function<void()> &then) { then(); }
};

} // namespace buttondriver::simulator
