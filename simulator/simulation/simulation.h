// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"
#include "simulator/device/transfer_recorder.h"
#include "simulator/device/virtual_panel.h"
#include "simulator/simulation/panel_driver.h"
#include "simulator/simulation/simulation_counters.h"
#include "simulator/simulation/simulation_settings.h"
#include "simulator/traffic/log_tap.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace buttondriver::simulator {

/// A virtual panel and what drives it, with pictures and a recording of what the panel was told.
/// Lives on the main thread, beside a QCoreApplication. One object a process.
class Simulation : public QObject {
  Q_OBJECT

public:
  explicit Simulation(const SimulationSettings &settings);
  ~Simulation() override;

  /// Opens the recording and starts what drives the panel. Fails when the recording cannot be written, and when the
  /// driver cannot be started: there is no such root, or the daemon's port or the device's socket cannot be had.
  Outcome<Done> start();

  VirtualPanel &panel() { return _panel; }
  const VirtualPanel &panel() const { return _panel; }
  /// The daemon in this program, once it has started; null when another program drives the panel.
  Daemon *daemon() { return _driver->daemon(); }
  /// The messages that clients of that daemon have sent; none where the settings do not ask for the traffic to be kept.
  /// Null when another program drives the panel.
  const MessageObserver *messages() const { return _driver->messages(); }
  /// What the program has logged; null where the settings do not ask for the traffic to be kept.
  const LogTap *log() const { return _log ? &*_log : nullptr; }
  SimulationCounters counters() const;

  /// Calls `then` on the main thread with what the panel shows once all work queued before has been carried out. Of
  /// another program only those transfers are known that have been carried out.
  void whenWorkIsDone(std::function<void(const PanelState &)> then);

  /// The same, with the font that texts are drawn with by then, so that they can be read from the screens. The font is
  /// copied for that.
  void whenTextsCanBeRead(std::function<void(const PanelState &, const ScreenFont &)> then);

  /// Makes the panel as it is after the start, lamps dark, screens black, the intensity as at the start, nothing
  /// blinking; empties the lists of messages, texts and log lines, and sets the counters to 0. First waits for the
  /// messages of connections that are closed by now. Calls `then` on the main thread when the panel shows it. Only with
  /// a daemon in this program: another one would not know.
  void reset(std::function<void()> then);

public slots:
  /// Writes the picture, if one was asked for, of what was accepted so far.
  void takeSnapshot();
  /// Writes the picture, as takeSnapshot, and then ends the application; asked again, ends it at once.
  void end();
  /// The same, but in neither order does it count as one of the two for end().
  void endAfterWork();

private:
  void writeSnapshot(const PanelState &state) const;

  SimulationSettings _settings;
  bool _is_ending = false;
  bool _was_asked_to_end = false; ///< by end()
  VirtualPanel _panel;
  VirtualPanel::Counters _counters_at_reset;
  std::optional<LogTap> _log;
  std::optional<TransferRecorder> _recorder;
  std::unique_ptr<PanelDriver> _driver;
};

} // namespace buttondriver::simulator
