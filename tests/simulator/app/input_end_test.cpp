// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/input_end.h"

#include "support/event_loop.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace buttondriver::simulator {
namespace {

class InputEndTest : public testing::Test {
protected:
  InputEndTest() { EXPECT_EQ(::pipe(ends), 0); }
  ~InputEndTest() override {
    for (const int end : ends)
      if (end >= 0)
        ::close(end);
  }
  void closeWritingEnd() {
    ::close(ends[1]);
    ends[1] = -1;
  }

  int ends[2] = {-1, -1};
  int told = 0;
};

TEST_F(InputEndTest, is_told_once_when_nobody_holds_the_other_end) {
  const int second = ::dup(ends[1]);
  const InputEnd input_end(ends[0], [this] { ++told; });
  closeWritingEnd();
  QCoreApplication::processEvents();
  EXPECT_EQ(told, 0);
  ::close(second);
  EXPECT_TRUE(test::process_events_until([this] { return told > 0; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(told, 1);
}

TEST_F(InputEndTest, what_comes_before_is_thrown_away) {
  const InputEnd input_end(ends[0], [this] { ++told; });
  const QByteArray more_than_is_read_at_once(10'000, 'x');
  ASSERT_EQ(::write(ends[1], more_than_is_read_at_once.constData(), 10'000), 10'000);
  QCoreApplication::processEvents();
  EXPECT_EQ(told, 0);
  closeWritingEnd();
  EXPECT_TRUE(test::process_events_until([this] { return told > 0; }));
}

} // namespace
} // namespace buttondriver::simulator
