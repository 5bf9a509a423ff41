// SPDX-License-Identifier: Apache-2.0
#include "process/process.h"

#include "logging/message_handler.h"

#include <csignal>
#include <cstdlib>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace buttondriver {

namespace {

/// Qt can be told by its environment to drop messages, and even to end the process at one that a client provokes.
void forget_qt_environment() {
  std::vector<std::string> names;
  for (char **entry = environ; entry && *entry; ++entry) {
    const std::string variable(*entry);
    if (variable.rfind("QT_", 0) == 0)
      names.push_back(variable.substr(0, variable.find('=')));
  }
  for (const std::string &name : names)
    ::unsetenv(name.c_str());
}

/// A connection takes a descriptor. The usual limit is far below what the system lets a process have.
void raise_descriptor_limit() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
    return;
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace

void prepare_process() {
  forget_qt_environment();
  raise_descriptor_limit();
  // A log that nobody reads, or that has grown to the limit of a file's size, is no reason to end.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  install_message_handler();
}

} // namespace buttondriver
