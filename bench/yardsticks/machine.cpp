// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/machine.h"

#include <QtGlobal>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sys/utsname.h>
#include <thread>

namespace buttondriver::yardsticks {

namespace {

/// As the kernel names it; not every kind of machine has such a line.
std::string processor_name() {
  std::ifstream lines("/proc/cpuinfo");
  for (std::string line; std::getline(lines, line);)
    if (line.compare(0, 10, "model name") == 0 && line.find(": ") != std::string::npos)
      return line.substr(line.find(": ") + 2);
  return "a processor without a name";
}

} // namespace

std::string machine_text() {
  utsname system{};
  ::uname(&system);
  return std::to_string(std::thread::hardware_concurrency()) + " processors (" + processor_name() + ", " +
         system.machine + "), " + system.sysname + ' ' + system.release +
         ". Built by " BUTTONDRIVER_YARDSTICK_COMPILER ", with Qt " + qVersion();
}

std::string load_text() {
  double load = 0;
  ::getloadavg(&load, 1);
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", load);
  return text;
}

} // namespace buttondriver::yardsticks
