// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation/simulation.h"

#include "logging/standard_output.h"
#include "simulator/notices/notices.h"
#include "simulator/picture/panel_picture.h"
#include "simulator/simulation/outside_driver.h"
#include "simulator/simulation/own_daemon.h"
#include "threads/post.h"

#include <QCoreApplication>
#include <QFile>

#include <memory>
#include <utility>

namespace buttondriver::simulator {

namespace {

std::unique_ptr<PanelDriver> driver_for(const SimulationSettings &settings, VirtualPanel &panel) {
  if (!settings.device_socket.isEmpty())
    return std::make_unique<OutsideDriver>(settings.device_socket, settings.font, panel);
  return std::make_unique<OwnDaemon>(OwnDaemon::Settings{settings.root, settings.font, settings.intensity_percent,
                                                         settings.daemon_arguments, settings.keeps_traffic},
                                     panel);
}

} // namespace

Simulation::Simulation(const SimulationSettings &settings)
    : _settings(settings), _driver(driver_for(settings, _panel)) {}

Simulation::~Simulation() {
  _driver.reset();
  if (const std::uint64_t refused = _panel.counters().refused; refused > 0)
    tell("buttondriver-sim: %llu transfers in all that no device would accept\n",
         static_cast<unsigned long long>(refused));
}

Outcome<Done> Simulation::start() {
  if (!_settings.record_file.isEmpty()) {
    _recorder.emplace(QFile::encodeName(_settings.record_file).toStdString());
    if (!_recorder->isOpen())
      return Failure{QStringLiteral("cannot write the recording %1").arg(_settings.record_file)};
    _panel.setRecorder(&*_recorder);
    tell_detail("buttondriver-sim: recording %s\n", QFile::encodeName(_settings.record_file).constData());
  }
  if (!_settings.snapshot_file.isEmpty())
    tell_detail("buttondriver-sim: snapshot %s\n", QFile::encodeName(_settings.snapshot_file).constData());
  if (_settings.keeps_traffic)
    _log.emplace();
  return _driver->start();
}

void Simulation::whenWorkIsDone(std::function<void(const PanelState &)> then) {
  _driver->whenWorkIsDone(
      [this, then = std::move(then)](const PanelState &state) { post(this, [then, state] { then(state); }); });
}

void Simulation::whenTextsCanBeRead(std::function<void(const PanelState &, const ScreenFont &)> then) {
  _driver->whenTextsCanBeRead([this, then = std::move(then)](const PanelState &state, const ScreenFont &font) {
    // Qt copies the function on its way.
    const auto shared_font = std::make_shared<const ScreenFont>(font);
    post(this, [then, state, shared_font] { then(state, *shared_font); });
  });
}

SimulationCounters Simulation::counters() const {
  const VirtualPanel::Counters now = _panel.counters();
  SimulationCounters counters;
  counters.transfers = now.transfers - _counters_at_reset.transfers;
  counters.refused_transfers = now.refused - _counters_at_reset.refused;
  _driver->count(counters);
  return counters;
}

void Simulation::reset(std::function<void()> then) {
  _driver->reset([this, then = std::move(then)] {
    if (_log)
      _log->forget();
    whenWorkIsDone([this, then](const PanelState &) {
      _counters_at_reset = _panel.counters();
      then();
    });
  });
}

void Simulation::takeSnapshot() {
  whenWorkIsDone([this](const PanelState &state) { writeSnapshot(state); });
}

void Simulation::end() {
  if (_was_asked_to_end)
    QCoreApplication::quit();
  _was_asked_to_end = true;
  endAfterWork();
}

void Simulation::endAfterWork() {
  if (_is_ending)
    return;
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
    tell("buttondriver-sim: wrote %s\n", file_name.constData());
  else
    tell_fault("buttondriver-sim: cannot write %s: %s\n", file_name.constData(),
               written.failure().text.toLocal8Bit().constData());
}

} // namespace buttondriver::simulator
