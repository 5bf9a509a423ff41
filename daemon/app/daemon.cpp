// SPDX-License-Identifier: Apache-2.0
#include "app/daemon.h"

#include "buttons/button_factory.h"
#include "logging/log_line.h"
#include "logging/standard_output.h"
#include "protocol/framing.h"

namespace buttondriver {

Daemon::Daemon(const SystemPaths &paths) : _paths(paths), _fpga(paths) {}

bool Daemon::start(const QStringList &arguments, const WrapSetter &wrap) {
  if (arguments.size() < 2) {
    critical_line() << "buttondriver:map file must be specified as first argument!!!";
    return false;
  }
  const QString address = arguments.value(2);
  const quint16 port = arguments.size() > 3 ? arguments[3].toUShort(nullptr, 10) : DEFAULT_PORT;

  ButtonMap buttons;
  ButtonFactory().createButtons(buttons, &_fpga);
  for (const auto &[id, button] : buttons)
    _buttons.emplace_back(button);
  _dispatcher.emplace(_paths);
  _dispatcher->setButtons(buttons);
  _dispatcher->setFPGA(&_fpga);
  ButtonSetter &setter = *_dispatcher;
  _server.emplace(address, port, wrap ? wrap(&setter) : &setter);
  QObject::connect(&_fpga, &FPGA::backlogHigh, &*_server, &Connector::pauseReading);
  QObject::connect(&_fpga, &FPGA::backlogLow, &*_server, &Connector::resumeReading);
  const NullMessageLog &null_messages = _dispatcher->nullMessageLog();
  QObject::connect(&null_messages, &NullMessageLog::clientWaits, &*_server, &Connector::holdClient);
  QObject::connect(&null_messages, &NullMessageLog::clientGoesOn, &*_server, &Connector::releaseClient);
  QObject::connect(&null_messages, &NullMessageLog::backlogFull, &*_server, &Connector::holdNullMessages);
  QObject::connect(&null_messages, &NullMessageLog::backlogLow, &*_server, &Connector::releaseNullMessages);
  QObject::connect(&*_server, &Connector::clientGone, &*_dispatcher, &ButtonSetterImpl::forgetImages);
  if (!_server->listen())
    print_line("buttondriver:failed to start server");
  return true;
}

void Daemon::follow(const LogGathering &log) {
  QObject::connect(&log, &LogGathering::full, &*_server, &Connector::holdAllClients);
  QObject::connect(&log, &LogGathering::low, &*_server, &Connector::releaseAllClients);
  const NullMessageLog &null_messages = _dispatcher->nullMessageLog();
  QObject::connect(&log, &LogGathering::full, &null_messages, &NullMessageLog::pause);
  QObject::connect(&log, &LogGathering::low, &null_messages, &NullMessageLog::resume);
}

} // namespace buttondriver
