// SPDX-License-Identifier: Apache-2.0
#include "logging/standard_output.h"

#include "files/owned_descriptor.h"
#include "support/captured_log.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <iostream>
#include <string>
#include <unistd.h>

namespace buttondriver {
namespace {

/// What a reader at the other end of a pipe has got of what `act` printed, without anybody flushing.
std::string arrived_by(const std::function<void()> &act) {
  int ends[2];
  EXPECT_EQ(::pipe(ends), 0);
  std::fflush(stdout);
  const OwnedDescriptor reading_end(ends[0]);
  OwnedDescriptor writing_end(ends[1]);
  const OwnedDescriptor saved(::dup(STDOUT_FILENO));
  ::dup2(writing_end.get(), STDOUT_FILENO);
  act();
  ::dup2(saved.get(), STDOUT_FILENO);
  writing_end.reset();
  std::string text;
  char part[64];
  for (ssize_t got = 0; (got = ::read(reading_end.get(), part, sizeof part)) > 0;)
    text.append(part, static_cast<std::size_t>(got));
  return text;
}

TEST(StandardOutputTest, reaches_a_pipe_at_once_without_a_line_feed) {
  EXPECT_EQ(arrived_by([] {
              print("no line feed %d", 7);
              print_line("; a line");
            }),
            "no line feed 7; a line\n");
}

TEST(StandardOutputTest, keeps_its_place_among_what_the_program_writes_with_stdio) {
  EXPECT_EQ(arrived_by([] {
              std::printf("the program's first, ");
              std::fputs("its second, ", stdout);
              print("ours, ");
              std::cout << "its third, ";
              print_line("ours");
              std::printf("its last\n");
              std::fflush(stdout);
            }),
            "the program's first, its second, ours, its third, ours\nits last\n");
}

TEST(StandardOutputTest, takes_texts_of_any_length_and_returns_their_lengths) {
  test::CapturedOutput output;
  for (const std::size_t length : {0U, 511U, 512U, 513U, 100'000U}) {
    const std::string text(length, 'x');
    const int printed = print("%s.", text.c_str());
    EXPECT_EQ(output.take(), text + ".");
    EXPECT_EQ(printed, static_cast<int>(length + 1));
  }
  print_text("100 %s\n");
  EXPECT_EQ(output.take(), "100 %s\n");
}

std::string observed;

TEST(StandardOutputTest, passes_each_text_to_the_observer_as_it_is_written) {
  test::CapturedOutput output;
  observed.clear();
  observe_prints([](std::string_view text) { observed += "<" + std::string(text) + ">"; });
  print("%s %d", "a number", 7);
  print_line("; a line");
  observe_prints(nullptr);
  print_line("unseen");
  EXPECT_EQ(observed, "<a number 7><; a line\n>");
  EXPECT_EQ(output.take(), "a number 7; a line\nunseen\n");
}

} // namespace
} // namespace buttondriver
