// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/machine.h"

#include <QtGlobal>

#include <chrono>
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

/// In ticks since the machine was started.
struct ProcessorTimes {
  double idle = 0;
  double all = 0;
};

ProcessorTimes processor_times() {
  std::ifstream stat("/proc/stat");
  std::string name;
  ProcessorTimes times;
  stat >> name;
  // user nice system idle iowait irq softirq steal; what follows is part of user and nice.
  for (int i = 0; i < 8; ++i) {
    double ticks = 0;
    stat >> ticks;
    times.all += ticks;
    times.idle += i == 3 || i == 4 ? ticks : 0;
  }
  return times;
}

} // namespace

std::string machine_text() {
  utsname system{};
  ::uname(&system);
  return std::to_string(std::thread::hardware_concurrency()) + " processors (" + processor_name() + ", " +
         system.machine + "), " + system.sysname + ' ' + system.release +
         ". Built by " BUTTONDRIVER_YARDSTICK_COMPILER ", with Qt " + qVersion();
}

double busy_share(double seconds) {
  const ProcessorTimes before = processor_times();
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  const ProcessorTimes after = processor_times();
  const double all = after.all - before.all;
  return all > 0 ? 1 - (after.idle - before.idle) / all : 0;
}

} // namespace buttondriver::yardsticks
