// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/replay/monotonic_clock.h"
#include "buttonctl/replay/player.h"

#include <gtest/gtest.h>

#include <vector>

namespace buttondriver::buttonctl {
namespace {

/// A clock that wakes its caller late, each time by another delay.
class LateClock : public ReplayClock {
public:
  std::int64_t now = 5000000;
  std::vector<std::int64_t> deadlines;
  std::vector<std::int64_t> delays;

  std::int64_t nowUs() override { return now; }
  void waitUntil(std::int64_t deadline_us, const std::function<bool()> &give_up) override {
    EXPECT_FALSE(give_up());
    const std::int64_t delay = delays.empty() ? 0 : delays[deadlines.size() % delays.size()];
    deadlines.push_back(deadline_us);
    now = std::max(now, deadline_us) + delay;
  }
};

/// Takes its time, and fails from one frame on.
class SlowSink : public FrameSink {
public:
  explicit SlowSink(LateClock &clock) : _clock(clock) {}

  std::int64_t duration_us = 0;
  std::size_t frames_before_failure = 1000;
  std::vector<std::int64_t> sent_at;
  std::vector<std::int32_t> last_of;

  Outcome<Done> send(const RecordedFrame &frame, bool is_last) override {
    if (sent_at.size() >= frames_before_failure)
      return Failure{QStringLiteral("gone")};
    sent_at.push_back(_clock.now);
    if (is_last)
      last_of.push_back(frame.connection);
    _clock.now += duration_us;
    return Done{};
  }
  bool hasFailed() const override { return false; }

private:
  LateClock &_clock;
};

Recording recording_of(const std::vector<std::pair<std::int64_t, int>> &frames) {
  Recording recording;
  for (const auto &[time, connection] : frames) {
    recording.frames.push_back({time, connection, QByteArray(4, '\0')});
    recording.lines.push_back(static_cast<int>(recording.frames.size()) + 1);
  }
  return recording;
}

const QString file = QStringLiteral("a.rec");

TEST(PlayerTest, every_deadline_is_counted_from_the_first_frame) {
  struct Row {
    double speed;
    std::vector<std::int64_t> offsets;
  };
  // The recording's own times are 700, 700, 1700, 1000700 and 3600000700 (an hour).
  const Row rows[] = {
      {1, {0, 0, 1000, 1000000, 3600000000}},
      {2, {0, 0, 500, 500000, 1800000000}},
      {0.5, {0, 0, 2000, 2000000, 7200000000}},
      {3, {0, 0, 333, 333333, 1200000000}},
      {1000000, {0, 0, 0, 1, 3600}},
  };
  const Recording recording = recording_of({{700, 1}, {700, 1}, {1700, 1}, {1000700, 1}, {3600000700, 1}});
  for (const Row &row : rows) {
    LateClock clock;
    SlowSink sink(clock);
    ASSERT_TRUE(play(file, recording, row.speed, clock, sink));
    ASSERT_EQ(clock.deadlines.size(), row.offsets.size());
    for (std::size_t i = 0; i < row.offsets.size(); ++i)
      EXPECT_EQ(clock.deadlines[i], 5000000 + row.offsets[i]) << "speed " << row.speed << ", frame " << i;
  }
}

TEST(PlayerTest, being_late_does_not_add_up) {
  std::vector<std::pair<std::int64_t, int>> frames;
  for (int i = 0; i < 1000; ++i)
    frames.emplace_back(10000 * i, 1);
  LateClock clock;
  clock.delays = {3000, 0, 4999, 1};
  SlowSink sink(clock);
  sink.duration_us = 5000;
  ASSERT_TRUE(play(file, recording_of(frames), 1, clock, sink));
  ASSERT_EQ(sink.sent_at.size(), 1000U);
  for (int i = 0; i < 1000; ++i) {
    const auto place = static_cast<std::size_t>(i);
    EXPECT_EQ(clock.deadlines[place], 5000000 + 10000 * i);
    EXPECT_EQ(sink.sent_at[place], 5000000 + 10000 * i + clock.delays[place % 4]) << i;
  }
}

TEST(PlayerTest, what_was_held_up_is_sent_at_once_until_it_is_in_time_again) {
  LateClock clock;
  clock.delays = {0, 25000, 0, 0, 0, 0};
  SlowSink sink(clock);
  ASSERT_TRUE(play(file, recording_of({{0, 1}, {10000, 1}, {20000, 1}, {30000, 1}, {40000, 1}}), 1, clock, sink));
  EXPECT_EQ(sink.sent_at, (std::vector<std::int64_t>{5000000, 5035000, 5035000, 5035000, 5040000}));
}

TEST(PlayerTest, says_which_frame_of_a_connection_is_its_last) {
  LateClock clock;
  SlowSink sink(clock);
  ASSERT_TRUE(play(file, recording_of({{0, 3}, {1, 1}, {2, 3}, {3, 2}, {4, 1}}), 1, clock, sink));
  EXPECT_EQ(sink.last_of, (std::vector<std::int32_t>{3, 2, 1}));
}

TEST(PlayerTest, a_frame_that_cannot_be_sent_ends_it_and_is_named) {
  LateClock clock;
  SlowSink sink(clock);
  sink.frames_before_failure = 2;
  const auto played = play(file, recording_of({{0, 1}, {1, 1}, {2, 1}, {3, 1}}), 1, clock, sink);
  ASSERT_FALSE(played);
  EXPECT_EQ(played.failure().text.toStdString(), "a.rec:4: gone");
  EXPECT_EQ(clock.deadlines.size(), 3U);
}

TEST(PlayerTest, an_empty_recording_is_played_at_once) {
  LateClock clock;
  SlowSink sink(clock);
  EXPECT_TRUE(play(file, Recording(), 1, clock, sink));
  EXPECT_TRUE(clock.deadlines.empty());
}

TEST(MonotonicClockTest, never_wakes_before_the_deadline) {
  MonotonicClock clock;
  for (const std::int64_t wait_us : {-1000, 0, 1, 500, 1999, 2000, 2500, 12345}) {
    const std::int64_t deadline = clock.nowUs() + wait_us;
    clock.waitUntil(deadline, [] { return false; });
    EXPECT_GE(clock.nowUs(), deadline) << wait_us;
  }
}

TEST(MonotonicClockTest, gives_up_when_asked_to) {
  MonotonicClock clock;
  clock.waitUntil(clock.nowUs() + 3600000000, [] { return true; });
}

} // namespace
} // namespace buttondriver::buttonctl
