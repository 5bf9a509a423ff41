// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/running/log_reader.h"

#include <algorithm>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace buttondriver::yardsticks {

LogReader::LogReader() {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0)
    throw std::runtime_error("no pipe for a log");
  _read_end.reset(ends[0]);
  _write_end.reset(ends[1]);
  _thread = std::thread([this] { run(); });
}

LogReader::~LogReader() {
  _write_end.reset();
  _thread.join();
}

void LogReader::run() {
  std::vector<char> place(64 * 1024);
  for (;;) {
    const ssize_t size = ::read(_read_end.get(), place.data(), place.size());
    if (size <= 0)
      return;
    _lines += static_cast<std::uint64_t>(std::count(place.begin(), place.begin() + size, '\n'));
  }
}

} // namespace buttondriver::yardsticks
