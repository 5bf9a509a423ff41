// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace buttondriver::test {

/// A pipe that a log is written to and that tells one call of write() from the next, as long as none of them has more
/// than PIPE_BUF bytes. It takes sixteen calls, or as many as `most_writes` says, until somebody reads.
class LogPipe {
public:
  explicit LogPipe(int most_writes = 16) {
    int ends[2];
    EXPECT_EQ(::pipe2(ends, O_DIRECT | O_CLOEXEC), 0);
    // Far up: some shells know descriptors of one digit only.
    _reading_end.reset(::fcntl(ends[0], F_DUPFD_CLOEXEC, 100));
    ::close(ends[0]);
    _writing_end.reset(ends[1]);
    EXPECT_EQ(::fcntl(_writing_end.get(), F_SETPIPE_SZ, most_writes * 4096), most_writes * 4096);
  }

  int writingEnd() const { return _writing_end.get(); }
  /// The same for a program that the test starts, to be closed when it runs.
  OwnedDescriptor inheritedWritingEnd() const {
    OwnedDescriptor end(::dup(_writing_end.get()));
    EXPECT_LT(end.get(), 10) << "no shell takes it everywhere";
    return end;
  }
  void closeReadingEnd() { _reading_end.reset(); }
  void closeWritingEnd() { _writing_end.reset(); }

  /// Leaves no room, as a reader does who has stopped.
  void fill() const {
    for (pollfd end{_writing_end.get(), POLLOUT, 0}; ::poll(&end, 1, 0) > 0;)
      ASSERT_EQ(::write(_writing_end.get(), "x", 1), 1);
  }

  bool isEmpty() const { return !isReadableWithin(0); }

  /// What each write() has brought so far.
  std::vector<std::string> takeWrites() const {
    std::vector<std::string> writes;
    while (isReadableWithin(0) && takeWrite(writes)) {
    }
    return writes;
  }

  /// What each write() brings up to one that ends with `end`; whatever has come when that takes too long.
  std::vector<std::string> takeWritesUpTo(const std::string &end) const {
    std::vector<std::string> writes;
    std::string all;
    const auto ends = [&] { return all.size() >= end.size() && all.substr(all.size() - end.size()) == end; };
    while (!ends() && isReadableWithin(10'000) && takeWrite(writes))
      all += writes.back();
    return writes;
  }

  std::string takeAll() const { return joined(takeWrites()); }
  std::string takeUpTo(const std::string &end) const { return joined(takeWritesUpTo(end)); }

private:
  bool takeWrite(std::vector<std::string> &writes) const {
    char bytes[4096];
    const ssize_t got = ::read(_reading_end.get(), bytes, sizeof bytes);
    if (got > 0)
      writes.emplace_back(bytes, static_cast<std::size_t>(got));
    return got > 0;
  }

  static std::string joined(const std::vector<std::string> &texts) {
    std::string all;
    for (const std::string &text : texts)
      all += text;
    return all;
  }

  bool isReadableWithin(int time_ms) const {
    pollfd end{_reading_end.get(), POLLIN, 0};
    return ::poll(&end, 1, time_ms) > 0;
  }

  OwnedDescriptor _reading_end;
  OwnedDescriptor _writing_end;
};

} // namespace buttondriver::test
