// SPDX-License-Identifier: Apache-2.0
#include "event_loop/timers.h"

#include <QObject>
#include <QTimerEvent>

#include <gmock/gmock.h>

#include <functional>
#include <utility>
#include <vector>

namespace buttondriver {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

/// Remembers the ids of its timers that have fired.
class Receiver : public QObject {
public:
  std::vector<int> take() { return std::exchange(_ids, {}); }
  std::function<void(int id)> when_fired;

protected:
  void timerEvent(QTimerEvent *event) override {
    _ids.push_back(event->timerId());
    if (when_fired)
      when_fired(event->timerId());
  }

private:
  std::vector<int> _ids;
};

class TimersTest : public testing::Test {
protected:
  void add(int id, qint64 interval_ms) { timers.add(id, interval_ms, Qt::PreciseTimer, &receiver, start); }
  std::vector<int> firedAt(int ms) {
    const int sent = timers.fire(start + milliseconds(ms));
    const std::vector<int> ids = receiver.take();
    EXPECT_EQ(ids.size(), static_cast<std::size_t>(sent));
    return ids;
  }
  /// -1 when none is due ever.
  qint64 nextMs() const {
    const auto next = timers.next();
    return next ? std::chrono::duration_cast<milliseconds>(*next - start).count() : -1;
  }

  const Timers::Time start = Timers::Time() + milliseconds(1000);
  Receiver receiver;
  Timers timers;
};

TEST_F(TimersTest, fires_at_each_interval) {
  EXPECT_EQ(nextMs(), -1);
  add(1, 20);
  EXPECT_EQ(nextMs(), 20);
  EXPECT_THAT(firedAt(19), IsEmpty());
  EXPECT_THAT(firedAt(20), ElementsAre(1));
  EXPECT_THAT(firedAt(39), IsEmpty());
  EXPECT_THAT(firedAt(45), ElementsAre(1));
  EXPECT_EQ(nextMs(), 60);
}

TEST_F(TimersTest, fires_once_for_all_times_that_were_missed) {
  add(1, 20);
  EXPECT_THAT(firedAt(100), ElementsAre(1));
  EXPECT_EQ(nextMs(), 120);
  add(2, 0);
  EXPECT_THAT(firedAt(110), ElementsAre(2));
  EXPECT_THAT(firedAt(110), ElementsAre(2));
}

TEST_F(TimersTest, fires_in_the_order_in_which_they_are_due) {
  add(1, 30);
  add(2, 10);
  add(3, 20);
  add(4, 10);
  EXPECT_EQ(nextMs(), 10);
  EXPECT_THAT(firedAt(30), ElementsAre(2, 4, 3, 1));
}

TEST_F(TimersTest, lets_events_add_and_remove_any) {
  add(1, 10);
  add(2, 20);
  receiver.when_fired = [this](int) {
    timers.remove(2);
    add(3, 0);
    add(4, 5);
  };
  EXPECT_THAT(firedAt(20), ElementsAre(1));
  receiver.when_fired = {};
  EXPECT_THAT(firedAt(20), ElementsAre(3, 4, 1));
  EXPECT_TRUE(timers.removeAllOf(&receiver));
  EXPECT_FALSE(timers.removeAllOf(&receiver));
  EXPECT_THAT(firedAt(100), IsEmpty());
}

TEST_F(TimersTest, lets_an_event_remove_its_own_timer) {
  add(1, 10);
  receiver.when_fired = [this](int id) { EXPECT_TRUE(timers.remove(id)); };
  EXPECT_THAT(firedAt(10), ElementsAre(1));
  EXPECT_FALSE(timers.remove(1));
  EXPECT_EQ(nextMs(), -1);
}

TEST_F(TimersTest, does_not_fire_a_timer_within_its_own_event) {
  add(1, 0);
  add(2, 0);
  receiver.when_fired = [this](int id) {
    receiver.when_fired = {};
    EXPECT_EQ(id, 1);
    timers.fire(start + milliseconds(1));
  };
  EXPECT_EQ(timers.fire(start + milliseconds(1)), 1);
  EXPECT_THAT(receiver.take(), ElementsAre(1, 2));
  EXPECT_THAT(firedAt(2), ElementsAre(1, 2));
}

TEST_F(TimersTest, tells_what_is_there_and_how_long_it_has_to_wait) {
  add(7, 250);
  EXPECT_EQ(timers.remaining(7, start + milliseconds(100)), 150);
  EXPECT_EQ(timers.remaining(7, start + milliseconds(300)), 0);
  EXPECT_EQ(timers.remaining(8, start), -1);
  const auto all = timers.allOf(&receiver);
  ASSERT_EQ(all.size(), 1);
  EXPECT_EQ(all[0].timerId, 7);
  EXPECT_EQ(all[0].interval, 250);
  EXPECT_EQ(all[0].timerType, Qt::PreciseTimer);
  const QObject other;
  EXPECT_TRUE(timers.allOf(&other).isEmpty());
}

} // namespace
} // namespace buttondriver
