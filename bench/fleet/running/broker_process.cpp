// SPDX-License-Identifier: Apache-2.0
#include "fleet/running/broker_process.h"

#include <csignal>
#include <filesystem>
#include <pwd.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace buttondriver::fleet {

BrokerProcess::BrokerProcess(const std::string &more_lines) {
  std::string lines = "log_type error\nallow_anonymous true\npersistence true\npersistence_location " +
                      _folder.path("") + "\n" + more_lines;
  // Root would else become a user who may not read the folder.
  if (const passwd *const user = ::getpwuid(::getuid()))
    lines += std::string("user ") + user->pw_name + '\n';
  lines += "listener " + std::to_string(port()) + " 127.0.0.1\n";
  _configuration = _folder.write("mosquitto.conf", lines);
  start();
}

void BrokerProcess::start() {
  _process = std::make_unique<bench::ChildProcess>(
      std::vector<std::string>{BUTTONDRIVER_MOSQUITTO, "-c", _configuration}, std::vector<std::string>{});
  // Until it runs its own program it has the descriptors of this one, among them panels that listen.
  while (_process->waitForPort() != port())
    std::this_thread::yield();
}

void BrokerProcess::restart() {
  _process.reset();
  start();
}

void BrokerProcess::crash() {
  ::kill(_process->pid(), SIGKILL);
  _process.reset();
  std::filesystem::remove(_folder.path("mosquitto.db"));
  start();
}

} // namespace buttondriver::fleet
