#include "logging/standard_output.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <unistd.h>

namespace buttondriver {
namespace {

/// What a reader at the other end of a pipe has got, without anybody flushing.
TEST(StandardOutput, reaches_a_pipe_at_once_without_a_line_feed) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  std::fflush(stdout);
  const int saved = ::dup(STDOUT_FILENO);
  ::dup2(ends[1], STDOUT_FILENO);
  print("no line feed %d", 7);
  print_line("; a line");
  ::dup2(saved, STDOUT_FILENO);
  ::close(saved);
  ::close(ends[1]);
  char text[64] = {};
  std::size_t length = 0;
  for (ssize_t got = 1; got > 0; length += static_cast<std::size_t>(got))
    got = ::read(ends[0], text + length, sizeof text - length - 1);
  ::close(ends[0]);
  EXPECT_STREQ(text, "no line feed 7; a line\n");
}

} // namespace
} // namespace buttondriver
