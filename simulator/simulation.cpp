// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation.h"

#include "fpga/fpga_task.h"
#include "logging/standard_output.h"
#include "simulator/picture/panel_picture.h"
#include "threads/post.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <memory>
#include <utility>

namespace buttondriver::simulator {

namespace {

constexpr int highest_percent = 100;

/// Shipped beside the program, in the build folder as in an installation.
QString ready_made_root() {
  return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/buttondriver/panel-root"));
}

/// Runs on the worker, behind all tasks queued before it: then the panel shows their work.
class ReportStateTask : public FPGATask {
public:
  ReportStateTask(const VirtualPanel &panel, std::function<void(PanelState)> report)
      : _panel(panel), _report(std::move(report)) {}
  void execute() override { _report(_panel.state()); }

private:
  const VirtualPanel &_panel;
  std::function<void(PanelState)> _report;
};

} // namespace

Simulation::Simulation(const Options &options) : _options(options) { panel::use_register_device(&_panel); }

Simulation::~Simulation() {
  _daemon.reset();
  if (const std::uint64_t refused = _panel.counters().refused; refused > 0)
    print("buttondriver-sim: %llu transfers in all that no device would accept\n",
          static_cast<unsigned long long>(refused));
  panel::use_register_device(nullptr);
}

bool Simulation::start() {
  if (!_options.record_file.isEmpty()) {
    _recorder.emplace(QFile::encodeName(_options.record_file).toStdString());
    if (!_recorder->isOpen()) {
      std::fprintf(stderr, "buttondriver-sim: cannot write the recording %s\n",
                   QFile::encodeName(_options.record_file).constData());
      return false;
    }
    _panel.setRecorder(&*_recorder);
  }
  if (!_options.root.isEmpty() && !QDir(_options.root).exists()) {
    std::fprintf(stderr, "buttondriver-sim: there is no folder %s\n", QFile::encodeName(_options.root).constData());
    return false;
  }
  if (_options.http)
    _log.emplace();
  const QString root = _options.root.isEmpty() ? ready_made_root() : QDir(_options.root).absolutePath();
  _daemon.emplace(SystemPaths::under(QFile::encodeName(root).toStdString()));
  const auto observe = [this](ButtonSetter *dispatcher) -> ButtonSetter * {
    _messages.setNext(dispatcher);
    return &_messages;
  };
  if (!_daemon->start(_options.daemon_arguments, _options.http ? observe : WrapSetter()))
    return false;
  if (const quint16 port = _daemon->server().port(); port != 0)
    print("buttondriver-sim: listening on port %u\n", unsigned{port});
  return true;
}

void Simulation::whenWorkIsDone(std::function<void(const PanelState &)> then) {
  _daemon->fpga().queue(std::make_unique<ReportStateTask>(
      _panel, [this, then = std::move(then)](const PanelState &state) { post(this, [then, state] { then(state); }); }));
}

SimulationCounters Simulation::counters() const {
  const VirtualPanel::Counters now = _panel.counters();
  SimulationCounters counters;
  counters.messages = _messages.count();
  counters.transfers = now.transfers - _counters_at_reset.transfers;
  counters.refused_transfers = now.refused - _counters_at_reset.refused;
  counters.queue_length = _daemon->fpga().queueLength();
  counters.clients = _daemon->server().clients().size();
  return counters;
}

void Simulation::reset(std::function<void()> then) {
  // Through the daemon, because it remembers what blinks and how the toggle indicators are set.
  _daemon->dispatcher().setLEDState(-1, 0, 0);
  FPGA &fpga = _daemon->fpga();
  for (std::size_t id = 0; id < led_count; ++id)
    fpga.setLEDStatusIndicator(static_cast<int>(id), 0);
  for (std::size_t id = 0; id < toggle_count; ++id)
    fpga.setLEDToggleIndicator(static_cast<unsigned>(id), 0);
  fpga.setTFTIntensity(highest_percent);
  fpga.blackoutScreen(-1);
  _messages.forget();
  if (_log)
    _log->forget();
  whenWorkIsDone([this, then = std::move(then)](const PanelState &) {
    _counters_at_reset = _panel.counters();
    then();
  });
}

void Simulation::takeSnapshot() {
  whenWorkIsDone([this](const PanelState &state) { writeSnapshot(state); });
}

void Simulation::end() {
  if (_is_ending) {
    QCoreApplication::quit();
    return;
  }
  _is_ending = true;
  whenWorkIsDone([this](const PanelState &state) {
    writeSnapshot(state);
    QCoreApplication::quit();
  });
}

void Simulation::writeSnapshot(const PanelState &state) const {
  if (_options.snapshot_file.isEmpty())
    return;
  QString error;
  if (write_png(draw_panel(state), _options.snapshot_file, &error))
    print("buttondriver-sim: wrote %s\n", QFile::encodeName(_options.snapshot_file).constData());
  else
    std::fprintf(stderr, "buttondriver-sim: cannot write %s: %s\n",
                 QFile::encodeName(_options.snapshot_file).constData(), error.toLocal8Bit().constData());
}

} // namespace buttondriver::simulator
