// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/delta.h"

#include "stopwatch/report_layout.h"

#include <iomanip>
#include <ostream>
#include <utility>

namespace stopwatch {

namespace {

constexpr int samples_width = 14;
constexpr int interval_width = 12;

double microseconds(const timeval &time) {
  return static_cast<double>(time.tv_sec) * 1000000.0 + static_cast<double>(time.tv_usec);
}

double milliseconds_between(const timeval &start, const timeval &end) {
  return (microseconds(end) - microseconds(start)) / 1000.0;
}

template <typename Interval>
void write_columns(std::ostream &stream, const std::string &name, const std::string &description,
                   const std::string &samples, Interval average, Interval last) {
  stream << std::left << std::setw(name_width) << name << std::setw(description_width) << description
         << std::setw(samples_width) << samples << std::right << std::setw(interval_width) << average
         << std::setw(interval_width) << last;
  stream.unsetf(std::ios_base::adjustfield);
}

} // namespace

Delta::Delta(const std::string &name, const std::string &description, bool verbose, Clock clock)
    : Event(name, description, delta_event, verbose, std::move(clock)) {
  Delta::reset();
}

void Delta::start() {
  if (_running)
    return;
  _running = true;
  readClock(_startTime, "Getting the starting reference time...", "Delta::start(): gettimeofday() failed\n");
  tellTime("_startTime", _startTime);
}

void Delta::stop() {
  if (!_running)
    return;
  timeval now{};
  if (!readClock(now, "Getting the current time...", "Delta::stop():  gettimeofday() failed\n"))
    return;
  tellTime("now", now);
  ++_samples;
  _running = false;
  _last = milliseconds_between(_startTime, now);
  _total += _last;
  _average = _total / _samples;
  reportAutomatically();
}

void Delta::reset() {
  _samples = 0;
  _total = 0;
  _average = 0;
  _last = 0;
  _startTime = {};
  _running = false;
  _header_pending = false;
}

void Delta::printHeader(std::ostream &stream) const {
  stream << header_rule << "\nTime Difference Data\n";
  write_columns(stream, "Event Name", "Description", "Num", "Average", "Last");
  stream << '\n';
  write_columns(stream, "", "", "Samples", "(msecs)", "(msecs)");
  stream << '\n' << header_rule << "\n\n";
}

void Delta::report(std::ostream &stream) const {
  if (_header_pending)
    printHeader(stream);
  stream << std::fixed << std::setprecision(3);
  write_columns(stream, _name, _description, std::to_string(_samples), _average, _last);
}

} // namespace stopwatch
