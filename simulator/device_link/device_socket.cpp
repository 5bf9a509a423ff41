// SPDX-License-Identifier: Apache-2.0
#include "simulator/device_link/device_socket.h"

#include "simulator/notices/notices.h"

#include <QFile>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace buttondriver::simulator {

namespace {

constexpr int pause_ms = 100;

} // namespace

Outcome<Done> DeviceSocket::listen(const QString &path) {
  const QByteArray file = QFile::encodeName(path);
  if (const auto listening = _file.listen(file); !listening)
    return Failure{QStringLiteral("no device at %1: %2").arg(path, listening.failure().text)};
  _connecting.emplace(_file.descriptor(), QSocketNotifier::Read);
  connect(&*_connecting, SIGNAL(activated(int)), this, SLOT(accept()));
  tell("buttondriver-sim: device at %s\n", file.constData());
  return Done{};
}

bool DeviceSocket::hasDriver() const {
  return std::any_of(_sessions.begin(), _sessions.end(), [](const auto &session) { return session->isDriver(); });
}

void DeviceSocket::accept() {
  const int descriptor = _file.accept();
  if (descriptor < 0) {
    // While no descriptor is free, who has connected still waits, and would be announced again and again.
    _connecting->setEnabled(false);
    QTimer::singleShot(pause_ms, this, [this] { _connecting->setEnabled(true); });
    return;
  }
  if (_sessions.size() == most_connections)
    _sessions.erase(
        std::find_if(_sessions.begin(), _sessions.end(), [](const auto &session) { return !session->isDriver(); }));
  auto session = std::make_unique<DriverSession>(descriptor, _panel);
  connect(session.get(), &DriverSession::hello, this, [this, caller = session.get()] { admit(caller); });
  connect(session.get(), &DriverSession::ended, this,
          [this, caller = session.get()](const char *fault) { forget(caller, fault); });
  _sessions.push_back(std::move(session));
}

void DeviceSocket::admit(DriverSession *session) {
  const bool is_taken = hasDriver();
  tell(is_taken ? "buttondriver-sim: the device has a driver, another one was refused\n"
                : "buttondriver-sim: a driver has opened the device\n");
  session->welcome(is_taken ? EBUSY : 0);
}

void DeviceSocket::forget(DriverSession *session, const char *fault) {
  const auto place = std::find_if(_sessions.begin(), _sessions.end(),
                                  [session](const auto &candidate) { return candidate.get() == session; });
  if (place == _sessions.end())
    return;
  if (fault && !std::exchange(_is_fault_told, true))
    tell_fault("buttondriver-sim: somebody has sent the device %s; the connection was closed\n", fault);
  if (session->hasDriven())
    tell("buttondriver-sim: the driver has gone\n");
  // It is still calling, so it goes a little later.
  _ended.push_back(std::move(*place));
  QTimer::singleShot(0, this, [this] { _ended.clear(); });
  _sessions.erase(place);
}

} // namespace buttondriver::simulator
