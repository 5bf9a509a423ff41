// SPDX-License-Identifier: Apache-2.0
#include "support/panel_daemon.h"

#include "files/owned_descriptor.h"

#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace buttondriver::bench {

PanelDaemon::PanelDaemon(const std::string &program, std::int64_t transfer_ns, int log) {
  std::filesystem::copy(BUTTONDRIVER_BENCH_ROOT, _root.path(""), std::filesystem::copy_options::recursive);
  std::filesystem::create_directory(_root.path("dev"));
  _root.write("dev/fpga-reg", "");
  mapDeviceLog(_root.write("device-log", ""));
  _device->transfer_ns = transfer_ns;
  std::vector<std::string> variables = device_variables();
  variables.push_back("BUTTONDRIVER_TEST_ROOT=" + _root.path("").substr(0, _root.path("").size() - 1));
  variables.push_back(std::string(device_log_variable) + '=' + _root.path("device-log"));
  const std::int64_t start_ns = now_ns();
  _process.emplace(std::vector<std::string>{program, "map", "", "0"}, variables, log);
  constexpr unsigned step_us = 200;
  try {
    _port = _process->waitForPort(step_us);
  } catch (...) {
    ::munmap(_device, sizeof(DeviceLog));
    throw;
  }
  _start_seconds = static_cast<double>(now_ns() - start_ns) * 1e-9;
}

PanelDaemon::~PanelDaemon() {
  _process.reset();
  ::munmap(_device, sizeof(DeviceLog));
}

void PanelDaemon::mapDeviceLog(const std::string &file) {
  const OwnedDescriptor descriptor(::open(file.c_str(), O_RDWR | O_CLOEXEC));
  void *memory = MAP_FAILED;
  if (descriptor && ::ftruncate(descriptor.get(), sizeof(DeviceLog)) == 0)
    memory = ::mmap(nullptr, sizeof(DeviceLog), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor.get(), 0);
  if (memory == MAP_FAILED)
    throw std::runtime_error("no memory to share with the daemon in " + file);
  _device = static_cast<DeviceLog *>(memory);
}

std::vector<std::string> device_variables() {
  return {prepended("LD_PRELOAD", BUTTONDRIVER_TEST_PRELOAD ":" BUTTONDRIVER_BENCH_DEVICE),
          prepended("ASAN_OPTIONS", "verify_asan_link_order=0")};
}

} // namespace buttondriver::bench
