// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "latency/device/device_log.h"
#include "support/temporary_folder.h"

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace buttondriver::latency {

/// A daemon that runs beside this program, on files of its own and with a device whose transfers take `transfer_ns`.
/// Its log is thrown away. It is ended when this object goes, or when this program ends in whatever way.
class PanelDaemon {
public:
  /// `program` is the daemon's file. Throws std::runtime_error when it cannot be started or does not listen within
  /// twenty seconds.
  PanelDaemon(const std::string &program, std::int64_t transfer_ns);
  ~PanelDaemon();
  PanelDaemon(const PanelDaemon &) = delete;
  PanelDaemon &operator=(const PanelDaemon &) = delete;

  std::uint16_t port() const { return _port; }
  /// What its device tells; it goes on changing.
  const DeviceLog &device() const { return *_device; }

private:
  void mapDeviceLog(const std::string &file);
  void start(const std::string &program);
  void end();

  test::TemporaryFolder _root;
  DeviceLog *_device = nullptr;
  pid_t _pid = -1;
  std::uint16_t _port = 0;
};

} // namespace buttondriver::latency
