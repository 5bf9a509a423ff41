// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/event.h"

#include <iostream>
#include <utility>

namespace stopwatch {

Event::Event(const std::string &name, const std::string &description, std::int32_t type, bool verbose, Clock clock)
    : _verbose(verbose), _name(name), _description(description), _type(type), _clock(std::move(clock)) {}

Event::~Event() = default;

bool Event::readClock(timeval &time, const char *announcement, const char *failure_text) {
  if (_verbose)
    std::cout << announcement << std::endl;
  if (_clock(time) >= 0)
    return true;
  std::cerr << failure_text;
  return false;
}

void Event::tellTime(const char *label, const timeval &time) const {
  if (_verbose)
    std::cout << label << " = " << time.tv_sec << " seconds, " << time.tv_usec << " usecs." << std::endl;
}

void Event::reportAutomatically() const {
  if (!_auto_report)
    return;
  report(std::cout);
  std::cout << std::endl;
}

} // namespace stopwatch
