#pragma once

#include "app/daemon.h"
#include "simulator/options.h"
#include "simulator/transfer_recorder.h"
#include "simulator/virtual_panel.h"

#include <QObject>

#include <functional>
#include <optional>

namespace buttondriver::simulator {

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
  Daemon &daemon() { return *_daemon; }

  /// Calls `then` on the main thread with what the panel shows once all work queued before has been carried out.
  void whenWorkIsDone(std::function<void(const PanelState &)> then);

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
  std::optional<TransferRecorder> _recorder;
  std::optional<Daemon> _daemon;
};

} // namespace buttondriver::simulator
