// SPDX-License-Identifier: Apache-2.0
#include "stopwatch/time_stamp.h"

#include "stopwatch/report_layout.h"

#include <ctime>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <utility>

namespace stopwatch {

namespace {

constexpr int time_width = 13;

std::string local_time_text(const timeval &time) {
  // Unlike localtime, localtime_r need not notice by itself that the time zone was changed.
  ::tzset();
  std::tm local{};
  ::localtime_r(&time.tv_sec, &local);
  std::ostringstream text;
  text << std::setfill('0') << std::setw(2) << local.tm_hour << ':' << std::setw(2) << local.tm_min << ':'
       << std::setw(2) << local.tm_sec << '.' << std::setw(3) << time.tv_usec / 1000;
  return text.str();
}

void write_columns(std::ostream &stream, const std::string &name, const std::string &description,
                   const std::string &start, const std::string &end) {
  stream << std::left << std::setw(name_width) << name << std::setw(description_width) << description
         << std::setw(time_width) << start << std::setw(time_width) << end;
  stream.unsetf(std::ios_base::adjustfield);
}

} // namespace

TimeStamp::TimeStamp(const std::string &name, const std::string &description, bool verbose, Clock clock)
    : Event(name, description, time_stamp_event, verbose, std::move(clock)) {
  TimeStamp::reset();
}

void TimeStamp::start() {
  if (_running)
    return;
  _running = true;
  readClock(_startTime, "Getting the starting time...", "TimeStamp::start(): gettimeofday() failed\n");
  tellTime("_startTime", _startTime);
}

void TimeStamp::stop() {
  if (!_running)
    return;
  if (!readClock(_endTime, "Getting the end time...", "TimeStamp::stop():  gettimeofday() failed\n"))
    return;
  tellTime("_endTime", _endTime);
  reportAutomatically();
  _running = false;
}

void TimeStamp::reset() {
  _startTime = {};
  _endTime = {};
  _running = false;
  _header_pending = false;
}

void TimeStamp::printHeader(std::ostream &stream) const {
  stream << header_rule << "\nTimeStamp Data\n";
  write_columns(stream, "Event Name", "Description", "Start", "End");
  stream << '\n';
  write_columns(stream, "", "", "Time", "Time");
  stream << '\n' << header_rule << "\n\n";
}

void TimeStamp::report(std::ostream &stream) const {
  if (_header_pending)
    printHeader(stream);
  write_columns(stream, _name, _description, local_time_text(_startTime), local_time_text(_endTime));
}

} // namespace stopwatch
