// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation/simulation.h"

#include "fpga/queue/fpga_task.h"
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

/// Runs on the worker, after all tasks queued before it: then the panel shows their work.
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

Simulation::Simulation(const SimulationSettings &settings) : _settings(settings) {
  panel::use_register_device(&_panel);
}

Simulation::~Simulation() {
  _daemon.reset();
  if (const std::uint64_t refused = _panel.counters().refused; refused > 0)
    print("buttondriver-sim: %llu transfers in all that no device would accept\n",
          static_cast<unsigned long long>(refused));
  panel::use_register_device(nullptr);
}

Outcome<Done> Simulation::start() {
  if (!_settings.record_file.isEmpty()) {
    _recorder.emplace(QFile::encodeName(_settings.record_file).toStdString());
    if (!_recorder->isOpen())
      return Failure{QStringLiteral("cannot write the recording %1").arg(_settings.record_file)};
    _panel.setRecorder(&*_recorder);
  }
  if (!_settings.root.isEmpty() && !QDir(_settings.root).exists())
    return Failure{QStringLiteral("there is no folder %1").arg(_settings.root)};
  if (_settings.keeps_traffic)
    _log.emplace();
  const QString root = _settings.root.isEmpty() ? ready_made_root() : QDir(_settings.root).absolutePath();
  _daemon.emplace(SystemPaths::under(QFile::encodeName(root).toStdString()));
  const auto observe = [this](ButtonSetter *dispatcher) -> ButtonSetter * {
    _messages.setNext(dispatcher);
    return &_messages;
  };
  if (!_daemon->start(_settings.daemon_arguments, _settings.keeps_traffic ? observe : WrapSetter()))
    return Failure{QStringLiteral("the daemon has not started")};
  if (const quint16 port = _daemon->server().port(); port != 0)
    print("buttondriver-sim: listening on port %u\n", unsigned{port});
  return Done{};
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
  _daemon->dispatcher().setLEDState(dimensions::all_buttons, 0, 0);
  FPGA &fpga = _daemon->fpga();
  for (std::size_t id = 0; id < dimensions::led_count; ++id)
    fpga.setLEDStatusIndicator(static_cast<int>(id), 0);
  for (std::size_t id = 0; id < dimensions::toggle_indicator_count; ++id)
    fpga.setLEDToggleIndicator(static_cast<unsigned>(id), 0);
  fpga.setTFTIntensity(highest_percent);
  fpga.blackoutScreen(dimensions::all_screens);
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
  if (_settings.snapshot_file.isEmpty())
    return;
  const QByteArray file_name = QFile::encodeName(_settings.snapshot_file);
  if (const auto written = write_png(draw_panel(state), _settings.snapshot_file); written)
    print("buttondriver-sim: wrote %s\n", file_name.constData());
  else
    print_error("buttondriver-sim: cannot write %s: %s\n", file_name.constData(),
                written.failure().text.toLocal8Bit().constData());
}

} // namespace buttondriver::simulator
