// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/daemon.h"
#include "simulator/device/transfer_recorder.h"
#include "simulator/device/virtual_panel.h"
#include "simulator/options.h"
#include "simulator/traffic/log_tap.h"
#include "simulator/traffic/message_observer.h"

#include <QObject>

#include <functional>
#include <optional>

namespace buttondriver::simulator {

/// How much has happened since the start or the last reset, and what is going on.
struct SimulationCounters {
  std::uint64_t messages = 0;
  std::uint64_t transfers = 0;
  std::uint64_t refused_transfers = 0;
  std::size_t queue_length = 0; ///< tasks that the worker has not finished
  std::size_t clients = 0;      ///< open connections to the daemon
};

/// The daemon's own object graph on a virtual panel, with pictures and a recording of what the panel was told.
/// Lives on the main thread, beside a QCoreApplication. One object a process.
class Simulation : public QObject {
  Q_OBJECT

public:
  explicit Simulation(const Options &options);
  ~Simulation() override;

  /// Opens the recording and starts the daemon. Returns false, and says why, when that cannot be done.
  bool start();

  VirtualPanel &panel() { return _panel; }
  const VirtualPanel &panel() const { return _panel; }
  Daemon &daemon() { return *_daemon; }

  /// The messages that clients have sent; remembered only when a page was asked for.
  const MessageObserver &messages() const { return _messages; }
  /// What the program has said, null unless a page was asked for.
  const LogTap *log() const { return _log ? &*_log : nullptr; }
  SimulationCounters counters() const;

  /// Calls `then` on the main thread with what the panel shows once all work queued before has been carried out.
  void whenWorkIsDone(std::function<void(const PanelState &)> then);

  /// Makes the panel as it is after the start, lamps dark, screens black, the intensity at its highest, nothing
  /// blinking; empties the lists of messages, texts and log lines, and sets the counters to 0. Calls `then` on the main
  /// thread when the panel shows it.
  void reset(std::function<void()> then);

public slots:
  /// Writes the picture, if one was asked for, of what was accepted so far.
  void takeSnapshot();
  /// Writes the picture, as takeSnapshot, and then ends the application; asked again, ends it at once.
  void end();

private:
  void writeSnapshot(const PanelState &state) const;

  Options _options;
  bool _is_ending = false;
  VirtualPanel _panel;
  VirtualPanel::Counters _counters_at_reset;
  std::optional<LogTap> _log;
  MessageObserver _messages;
  std::optional<TransferRecorder> _recorder;
  std::optional<Daemon> _daemon;
};

} // namespace buttondriver::simulator
