// SPDX-License-Identifier: Apache-2.0
#include "support/child_process.h"

#include "files/owned_descriptor.h"
#include "soak/watched_process.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace buttondriver::bench {

namespace {

/// Waits until `is_done`, at most for `limit`; whether it came.
template <class Condition>
bool wait_for(Condition is_done, std::chrono::seconds limit, std::chrono::microseconds step) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!is_done()) {
    if (std::chrono::steady_clock::now() >= end)
      return false;
    std::this_thread::sleep_for(step);
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

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> words, const std::vector<std::string> &variables, int output)
    : _program(words.front()) {
  std::vector<std::string> all_variables = environment_with(variables);
  const std::vector<char *> environment = pointers_to(all_variables);
  const std::vector<char *> arguments = pointers_to(words);
  const OwnedDescriptor nowhere(::open("/dev/null", O_RDWR | O_CLOEXEC));
  _pid = ::fork();
  if (_pid != 0)
    return;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  ::dup2(nowhere.get(), STDIN_FILENO);
  for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO})
    ::dup2(output < 0 ? nowhere.get() : output, descriptor);
  ::execve(arguments[0], arguments.data(), environment.data());
  ::_exit(127);
}

std::uint16_t ChildProcess::waitForPort(unsigned step_us) {
  const soak::WatchedProcess process(_pid);
  std::uint16_t port = 0;
  const auto is_ready = [&] {
    port = process.listeningPort();
    return port != 0 || isGone();
  };
  wait_for(is_ready, std::chrono::seconds(20), std::chrono::microseconds(step_us));
  if (port == 0)
    throw std::runtime_error(_program + " cannot be started, or does not listen");
  return port;
}

bool ChildProcess::isGone() {
  if (_pid > 0 && ::waitpid(_pid, nullptr, WNOHANG) != 0)
    _pid = -1;
  return _pid < 0;
}

void ChildProcess::end() {
  if (isGone())
    return;
  ::kill(_pid, SIGTERM);
  if (wait_for([this] { return isGone(); }, std::chrono::seconds(5), std::chrono::milliseconds(1)))
    return;
  ::kill(_pid, SIGKILL);
  ::waitpid(_pid, nullptr, 0);
  _pid = -1;
}

std::string prepended(const std::string &name, const std::string &item) {
  const char *others = std::getenv(name.c_str());
  return name + '=' + item + (others && *others ? ':' + std::string(others) : std::string());
}

} // namespace buttondriver::bench
