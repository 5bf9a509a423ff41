// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation/own_daemon.h"

#include "fpga/queue/fpga_task.h"
#include "protocol/framing.h"
#include "server/client_buttondriver.h"
#include "simulator/notices/notices.h"
#include "simulator/simulation/listening_program.h"
#include "simulator/simulation/panel_root.h"

#include <QDir>
#include <QFile>

#include <cstddef>
#include <memory>
#include <utility>

#include <poll.h>

namespace buttondriver::simulator {

namespace {

constexpr int highest_percent = 100;

/// Writes the configuration that chooses this font.
bool write_configuration(const QString &name, QSize font) {
  QFile file(name);
  const QString text = QStringLiteral("[font]\nwidth=%1\nheight=%2\n").arg(font.width()).arg(font.height());
  return file.open(QIODevice::WriteOnly) && file.write(text.toLatin1()) == text.size();
}

/// The port in the daemon's arguments, as the daemon reads it.
quint16 wanted_port(const QStringList &arguments) {
  return arguments.size() > 3 ? arguments[3].toUShort(nullptr, 10) : DEFAULT_PORT;
}

QString why_not_on(quint16 port) {
  if (const auto program = listening_program(port))
    return QStringLiteral("port %1 is taken by %2").arg(QString::number(port), QString::fromStdString(*program));
  return QStringLiteral("port %1 cannot be had").arg(port);
}

/// Whether it has closed its connection. What it has sent may still be on its way; as long as its own system holds some
/// of that back, it cannot be told from others.
bool is_leaving(const ClientButtondriver &client) {
  if (!client.connected())
    return true;
  // Qt does not know before it has read all that came.
  pollfd connection{static_cast<int>(client.descriptor()), POLLRDHUP, 0};
  return ::poll(&connection, 1, 0) == 1;
}

/// Runs on the worker, after all tasks queued before it: then the panel shows their work. The worker holds the lock of
/// the panel's room meanwhile.
class ReportTask : public FPGATask {
public:
  explicit ReportTask(std::function<void()> report) : _report(std::move(report)) {}
  void execute() override { _report(); }

private:
  std::function<void()> _report;
};

} // namespace

OwnDaemon::OwnDaemon(const Settings &settings, VirtualPanel &panel) : _settings(settings), _panel(panel) {
  panel::use_register_device(&_panel);
}

OwnDaemon::~OwnDaemon() {
  _waiting.reset();
  _daemon.reset();
  panel::use_register_device(nullptr);
}

Outcome<SystemPaths> OwnDaemon::paths() {
  if (!_settings.root.isEmpty() && !QDir(_settings.root).exists())
    return Failure{QStringLiteral("there is no folder %1").arg(_settings.root)};
  const QString root = _settings.root.isEmpty() ? ready_made_root() : QDir(_settings.root).absolutePath();
  tell_detail("buttondriver-sim: root %s\n", QFile::encodeName(root).constData());
  SystemPaths paths = SystemPaths::under(QFile::encodeName(root).toStdString());
  if (_settings.font.isEmpty())
    return paths;
  const QSize size = read_font_size(_settings.font);
  const auto font = find_font(QFile::decodeName(paths.font_directory.c_str()), size);
  if (!font)
    return font.failure();
  // The daemon follows a configuration of its own, so that nobody's is changed.
  _configuration.emplace();
  const QString file = _configuration->filePath(QStringLiteral("launcher.cfg"));
  if (!write_configuration(file, size))
    return Failure{QStringLiteral("cannot write %1").arg(file)};
  paths.launcher_configuration = QFile::encodeName(file).toStdString();
  tell_detail("buttondriver-sim: font %s\n", QFile::encodeName(*font).constData());
  return paths;
}

Outcome<Done> OwnDaemon::start() {
  const auto paths = this->paths();
  if (!paths)
    return paths.failure();
  _daemon.emplace(*paths);
  const auto observe = [this](ButtonSetter *dispatcher) -> ButtonSetter * {
    _messages.setNext(dispatcher);
    return &_messages;
  };
  if (!_daemon->start(_settings.arguments, _settings.keeps_messages ? observe : WrapSetter()))
    return Failure{QStringLiteral("the daemon has not started")};
  // The daemon itself runs on without a server. Here nobody could reach the panel then, or another one would be taken
  // for it.
  if (_daemon->server().port() == 0)
    return Failure{why_not_on(wanted_port(_settings.arguments))};
  if (_settings.intensity_percent != highest_percent)
    _daemon->fpga().setTFTIntensity(_settings.intensity_percent);
  tell("buttondriver-sim: listening on port %u\n", unsigned{_daemon->server().port()});
  return Done{};
}

void OwnDaemon::whenWorkIsDone(std::function<void(const PanelState &)> then) {
  _daemon->fpga().queue(std::make_unique<ReportTask>([this, then = std::move(then)] { then(_panel.state()); }));
}

void OwnDaemon::whenTextsCanBeRead(std::function<void(const PanelState &, const ScreenFont &)> then) {
  _daemon->fpga().queue(
      std::make_unique<ReportTask>([this, then = std::move(then)] { then(_panel.state(), ScreenFont::inUse()); }));
}

void OwnDaemon::count(SimulationCounters &counters) const {
  counters.messages = _messages.count();
  counters.queue_length = _daemon->fpga().queueLength();
  counters.clients = _daemon->server().clients().size();
}

void OwnDaemon::reset(const std::function<void()> &then) {
  const auto left = std::make_shared<std::size_t>(1);
  const auto one_less = [this, left, then] {
    if (--*left > 0)
      return;
    resetNow();
    then();
  };
  for (const ClientButtondriver *client : _daemon->server().clients())
    if (is_leaving(*client)) {
      ++*left;
      QObject::connect(client, &QObject::destroyed, &*_waiting, one_less);
    }
  one_less();
}

void OwnDaemon::resetNow() {
  // Through the daemon, because it remembers what blinks and how the toggle indicators are set.
  _daemon->dispatcher().setLEDState(dimensions::all_buttons, 0, 0);
  FPGA &fpga = _daemon->fpga();
  for (std::size_t id = 0; id < dimensions::led_count; ++id)
    fpga.setLEDStatusIndicator(static_cast<int>(id), 0);
  for (std::size_t id = 0; id < dimensions::toggle_indicator_count; ++id)
    fpga.setLEDToggleIndicator(static_cast<unsigned>(id), 0);
  fpga.setTFTIntensity(_settings.intensity_percent);
  fpga.blackoutScreen(dimensions::all_screens);
  _messages.forget();
}

} // namespace buttondriver::simulator
