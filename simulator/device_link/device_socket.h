// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"
#include "simulator/device/virtual_panel.h"
#include "simulator/device_link/driver_session.h"
#include "simulator/device_link/socket_file.h"

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace buttondriver::simulator {

/// Has other programs drive the virtual panel, one at a time, as the only device that there is: what the panel shows
/// stays when one goes. The first connection that does not speak the protocol is told on standard error. Lives on the
/// event loop's thread.
class DeviceSocket : public QObject {
  Q_OBJECT

public:
  /// So many connections are kept, the driver's included. Another one takes the place of the oldest that drives
  /// nothing.
  static constexpr std::size_t most_connections = 8;

  /// `panel` outlives this object.
  explicit DeviceSocket(VirtualPanel &panel) : _panel(panel) {}

  /// Listens at `path`, and says so on standard output; see SocketFile for what can be wrong with it.
  Outcome<Done> listen(const QString &path);

  bool hasDriver() const;

private slots:
  void accept();

private:
  void admit(DriverSession *session);
  void forget(DriverSession *session, const char *fault);

  VirtualPanel &_panel;
  SocketFile _file;
  std::optional<QSocketNotifier> _connecting;
  std::vector<std::unique_ptr<DriverSession>> _sessions;
  std::vector<std::unique_ptr<DriverSession>> _ended;
  bool _is_fault_told = false;
};

} // namespace buttondriver::simulator
