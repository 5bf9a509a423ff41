// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/child_process.h"
#include "support/device/device_log.h"
#include "support/temporary_folder.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace buttondriver::bench {

/// A daemon that runs beside this program, on files of its own and with a device whose transfers take `transfer_ns`.
/// It is ended when this object goes, or when this program ends in whatever way.
class PanelDaemon {
public:
  /// `program` is the daemon's file. Its log goes to the descriptor `log`, which stays the caller's, or is thrown away
  /// when that is -1. Throws std::runtime_error when it cannot be started or does not listen within twenty seconds.
  PanelDaemon(const std::string &program, std::int64_t transfer_ns, int log = -1);
  ~PanelDaemon();
  PanelDaemon(const PanelDaemon &) = delete;
  PanelDaemon &operator=(const PanelDaemon &) = delete;

  std::uint16_t port() const { return _port; }
  pid_t pid() const { return _process->pid(); }
  /// From just before the daemon was started until it listened, found out within 0.2 ms.
  double startSeconds() const { return _start_seconds; }
  /// What its device tells; it goes on changing.
  const DeviceLog &device() const { return *_device; }

private:
  void mapDeviceLog(const std::string &file);

  test::TemporaryFolder _root;
  DeviceLog *_device = nullptr;
  std::optional<ChildProcess> _process;
  std::uint16_t _port = 0;
  double _start_seconds = 0;
};

/// What brings the device into a daemon, each as NAME=VALUE. In other programs it does nothing.
std::vector<std::string> device_variables();

} // namespace buttondriver::bench
