// SPDX-License-Identifier: Apache-2.0
#include "latency/panel_daemon.h"

#include "files/owned_descriptor.h"
#include "soak/watched_process.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace buttondriver::latency {

namespace {

/// Waits until `is_done`, at most for `limit`; whether it came.
template <class Condition> bool wait_for(Condition is_done, std::chrono::seconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!is_done()) {
    if (std::chrono::steady_clock::now() >= end)
      return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

/// The environment of this program, with `variables` in place of those of the same names.
std::vector<std::string> environment_with(const std::vector<std::string> &variables) {
  std::vector<std::string> all = variables;
  for (char **entry = environ; *entry; ++entry) {
    const std::string_view other = *entry;
    bool is_replaced = false;
    for (const std::string &variable : variables)
      is_replaced |= other.substr(0, other.find('=') + 1) == variable.substr(0, variable.find('=') + 1);
    if (!is_replaced)
      all.emplace_back(other);
  }
  return all;
}

/// Pointers to the strings, ended as execve(2) wants it. They hold as long as the strings do.
std::vector<char *> pointers_to(std::vector<std::string> &strings) {
  std::vector<char *> pointers;
  pointers.reserve(strings.size() + 1);
  for (std::string &string : strings)
    pointers.push_back(string.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// An item before what the variable `name` holds already.
std::string prepended(const std::string &name, const std::string &item) {
  const char *others = std::getenv(name.c_str());
  return name + '=' + item + (others && *others ? ':' + std::string(others) : std::string());
}

} // namespace

PanelDaemon::PanelDaemon(const std::string &program, std::int64_t transfer_ns) {
  std::filesystem::copy(BUTTONDRIVER_LATENCY_ROOT, _root.path(""), std::filesystem::copy_options::recursive);
  std::filesystem::create_directory(_root.path("dev"));
  _root.write("dev/fpga-reg", "");
  mapDeviceLog(_root.write("device-log", ""));
  _device->transfer_ns = transfer_ns;
  start(program);
  const soak::WatchedProcess process(_pid);
  const auto is_ready = [&] {
    _port = process.listeningPort();
    return _port != 0 || ::waitpid(_pid, nullptr, WNOHANG) != 0;
  };
  if (wait_for(is_ready, std::chrono::seconds(20)) && _port != 0)
    return;
  end();
  throw std::runtime_error(program + " cannot be started, or does not listen");
}

PanelDaemon::~PanelDaemon() { end(); }

void PanelDaemon::mapDeviceLog(const std::string &file) {
  const OwnedDescriptor descriptor(::open(file.c_str(), O_RDWR | O_CLOEXEC));
  void *memory = MAP_FAILED;
  if (descriptor && ::ftruncate(descriptor.get(), sizeof(DeviceLog)) == 0)
    memory = ::mmap(nullptr, sizeof(DeviceLog), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor.get(), 0);
  if (memory == MAP_FAILED)
    throw std::runtime_error("no memory to share with the daemon in " + file);
  _device = static_cast<DeviceLog *>(memory);
}

void PanelDaemon::start(const std::string &program) {
  std::vector<std::string> variables =
      environment_with({prepended("LD_PRELOAD", BUTTONDRIVER_TEST_PRELOAD ":" BUTTONDRIVER_LATENCY_DEVICE),
                        prepended("ASAN_OPTIONS", "verify_asan_link_order=0"),
                        "BUTTONDRIVER_TEST_ROOT=" + _root.path("").substr(0, _root.path("").size() - 1),
                        std::string(device_log_variable) + '=' + _root.path("device-log")});
  std::vector<std::string> words = {program, "map", "", "0"};
  const std::vector<char *> environment = pointers_to(variables);
  const std::vector<char *> arguments = pointers_to(words);
  const OwnedDescriptor nowhere(::open("/dev/null", O_RDWR | O_CLOEXEC));
  _pid = ::fork();
  if (_pid != 0)
    return;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    ::dup2(nowhere.get(), descriptor);
  ::execve(program.c_str(), arguments.data(), environment.data());
  ::_exit(127);
}

void PanelDaemon::end() {
  const auto is_gone = [this] { return ::waitpid(_pid, nullptr, WNOHANG) != 0; };
  if (_pid > 0 && !is_gone()) {
    ::kill(_pid, SIGTERM);
    if (!wait_for(is_gone, std::chrono::seconds(5))) {
      ::kill(_pid, SIGKILL);
      ::waitpid(_pid, nullptr, 0);
    }
  }
  ::munmap(_device, sizeof(DeviceLog));
}

} // namespace buttondriver::latency
