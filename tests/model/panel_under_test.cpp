// SPDX-License-Identifier: Apache-2.0
#include "model/panel_under_test.h"

#include "buttons/button_factory.h"
#include "fpga/queue/fpga_task.h"
#include "panel/leds.h"
#include "panel/panel_lib.h"

#include <QFile>

#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <utility>

namespace buttondriver::test {

namespace {

constexpr std::chrono::minutes longest_work{1};

/// Tells when the worker comes by.
class MilestoneTask : public FPGATask {
public:
  explicit MilestoneTask(std::promise<void> reached) : _reached(std::move(reached)) {}
  void execute() override { _reached.set_value(); }

private:
  std::promise<void> _reached;
};

QByteArray to_byte_array(const std::string &bytes) { return {bytes.data(), static_cast<int>(bytes.size())}; }

} // namespace

PanelUnderTest::PanelUnderTest(const std::string &font_folder, LossyWire loses)
    : _paths(_root.paths()), _wire(std::move(loses)) {
  _paths.font_directory = font_folder;
  panel::use_register_device(&_wire);
  _fpga.emplace(_paths);
  ButtonFactory().createButtons(_buttons, &*_fpga);
}

PanelUnderTest::~PanelUnderTest() {
  _dispatcher.reset();
  for (const auto &[id, button] : _buttons)
    delete button;
  _fpga.reset();
  panel::panel_lib_done();
  panel::toggle_indicator_bits = 0;
  panel::use_register_device(nullptr);
}

void PanelUnderTest::restart(int width, int height) {
  _undelivered.clear();
  waitForWorker();
  _wire.panel.emplace();
  panel::toggle_indicator_bits = 0;
  QFile::remove(QString::fromStdString(_paths.button_level_file));
  chooseFont(width, height);
  _dispatcher.emplace(_paths);
  _dispatcher->setButtons(_buttons);
  _dispatcher->setFPGA(&*_fpga);
  _answers.emplace();
  _answers->open(QIODevice::ReadWrite);
}

void PanelUnderTest::apply(const Command &command) {
  if (command.kind == Command::Kind::message) {
    _undelivered.push_back(to_byte_array(command.bytes));
    return;
  }
  deliver();
  switch (command.kind) {
  case Command::Kind::tick:
    return _dispatcher->update_timer();
  case Command::Kind::font:
    return chooseFont(command.width, command.height);
  case Command::Kind::levels:
    return _root.writeLevels(to_byte_array(command.bytes));
  case Command::Kind::remove_levels:
    QFile::remove(QString::fromStdString(_paths.button_level_file));
    return;
  case Command::Kind::message:
  case Command::Kind::look:
    return;
  }
}

ShownPanel PanelUnderTest::shown() {
  deliver();
  waitForWorker();
  const simulator::PanelState state = _wire.panel->state();
  ShownPanel panel;
  panel.button_leds = state.button_leds;
  panel.status_leds = state.status_leds;
  panel.toggles = state.toggles;
  panel.intensity = state.intensity;
  for (std::size_t screen = 0; screen < panel.screens.size(); ++screen)
    panel.screens[screen].assign(state.screens[screen].begin(), state.screens[screen].end());
  panel.answers = _answers->data().toStdString();
  return panel;
}

void PanelUnderTest::deliver() {
  if (_undelivered.empty())
    return;
  _dispatcher->process_messages(std::exchange(_undelivered, {}), &*_answers, 1000);
}

void PanelUnderTest::waitForWorker() {
  std::promise<void> reached;
  std::future<void> done = reached.get_future();
  _fpga->queue(std::make_unique<MilestoneTask>(std::move(reached)));
  if (done.wait_for(longest_work) != std::future_status::ready)
    throw std::runtime_error("the worker has not finished within a minute");
}

/// Lines that were asked for before still get the font of before.
void PanelUnderTest::chooseFont(int width, int height) {
  waitForWorker();
  // QSettings reads a file again only when its size or its time has changed, and file times are coarse.
  const QByteArray padding(++_configurations_written % 2, '\n');
  _root.writeLauncherConfiguration(
      QStringLiteral("[font]\nwidth=%1\nheight=%2\n").arg(width, 3).arg(height, 3).toLatin1() + padding);
  _fpga->check_font_settings(_root.launcherConfiguration());
}

} // namespace buttondriver::test
