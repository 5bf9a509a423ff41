// SPDX-License-Identifier: Apache-2.0
#include "support/device/dispatcher_fixture.h"

#include "support/event_loop.h"

#include <gmock/gmock.h>

#include <cstdio>

namespace buttondriver {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;

class LEDStateTest : public test::DispatcherFixture {
protected:
  void ticks(int count) {
    for (int i = 0; i < count; ++i)
      dispatcher->update_timer();
  }
};

TEST_F(LEDStateTest, a_steady_value_goes_straight_to_the_button) {
  dispatcher->setLEDState(5, 1, 0);
  dispatcher->setLEDState(5, 0, 0);
  dispatcher->setLEDState(5, 2, 0);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 6500", "w 0900 1 4500", "w 0900 1 4500"));
  EXPECT_FALSE(dispatcher->isBlinking());
}

TEST_F(LEDStateTest, a_refresh_sends_nothing_and_leaves_the_light_as_it_is) {
  dispatcher->setLEDState(5, 1, 0);
  finishedTransfers();
  buttons.at(5)->refresh();
  EXPECT_THAT(finishedTransfers(), ElementsAre());
}

TEST_F(LEDStateTest, a_blink_of_1000_ms_changes_every_fifty_ticks) {
  dispatcher->setLEDState(3, -1, 1000);
  EXPECT_THAT(finishedTransfers(), ElementsAre());
  ticks(1);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 4300"));
  ticks(49);
  EXPECT_THAT(finishedTransfers(), ElementsAre());
  ticks(1);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 6300"));
  ticks(50);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 4300"));
}

TEST_F(LEDStateTest, a_negative_time_sends_the_second_value_at_every_tick) {
  dispatcher->setLEDState(3, -1, -500);
  ticks(3);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 6300", "w 0900 1 6300", "w 0900 1 6300"));
}

TEST_F(LEDStateTest, tells_which_buttons_blink_and_with_which_time) {
  EXPECT_TRUE(dispatcher->blinkTimes().empty());
  dispatcher->setLEDState(3, -1, 200);
  dispatcher->setLEDState(4, -1, -500);
  dispatcher->setLEDState(5, 1, 100);
  EXPECT_EQ(dispatcher->blinkTimes(), (std::map<qint32, qint32>{{3, 200}, {4, -500}}));
  dispatcher->setLEDState(3, 0, 0);
  EXPECT_EQ(dispatcher->blinkTimes(), (std::map<qint32, qint32>{{4, -500}}));
}

TEST_F(LEDStateTest, the_timer_starts_once_and_stops_with_the_last_blinking_button) {
  test::CapturedLog log;
  dispatcher->setLEDState(3, -1, 200);
  dispatcher->setLEDState(4, -1, 200);
  dispatcher->setLEDState(3, -1, 200);
  EXPECT_THAT(log.take(), ElementsAre("debug: ButtonSetterImpl, update timer started "));
  dispatcher->setLEDState(3, 0, 0);
  ticks(1);
  EXPECT_THAT(log.take(), ElementsAre());
  dispatcher->setLEDState(4, 1, 0);
  EXPECT_TRUE(dispatcher->isBlinking());
  ticks(1);
  EXPECT_THAT(log.take(), ElementsAre("debug: update timer stoped "));
  EXPECT_FALSE(dispatcher->isBlinking());
}

TEST_F(LEDStateTest, a_repeated_blink_starts_its_phase_again) {
  dispatcher->setLEDState(3, -1, 60);
  ticks(2);
  dispatcher->setLEDState(3, -1, 60);
  ticks(1);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 4300", "w 0900 1 4300"));
  ticks(3);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 6300"));
}

TEST_F(LEDStateTest, button_id_minus_one_means_all_buttons) {
  dispatcher->setLEDState(-1, 1, 0);
  std::vector<std::string> lit;
  for (unsigned id = 0; id < 24; ++id) {
    char line[32];
    std::snprintf(line, sizeof line, "w 0900 1 %02x00", 0x60 + id);
    lit.emplace_back(line);
  }
  EXPECT_EQ(finishedTransfers(), lit);

  dispatcher->setLEDState(-1, -1, 200);
  ticks(10);
  EXPECT_THAT(finishedTransfers(), SizeIs(24));
  ticks(1);
  const std::vector<std::string> second_phase = finishedTransfers();
  for (const std::string &line : lit)
    EXPECT_THAT(second_phase, Contains(line));
}

TEST_F(LEDStateTest, faults_are_printed_and_change_nothing) {
  dispatcher->setLEDState(4, -1, 40);
  test::CapturedOutput output;
  dispatcher->setLEDState(24, 1, 0);
  dispatcher->setLEDState(-2, -1, 100);
  dispatcher->setLEDState(4, -1, 0);
  EXPECT_EQ(output.take(), "buttondriver:invalid button id 24, setLEDState()\n"
                           "buttondriver:invalid button id -2, setLEDState()\n"
                           "buttondriver: button id 4 must have a non-zero time to use blinking.");
  ticks(1);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 4400"));
}

TEST_F(LEDStateTest, all_buttons_with_time_0_are_printed_one_by_one) {
  test::CapturedOutput output;
  dispatcher->setLEDState(-1, -1, 0);
  std::string expected;
  for (int id = 0; id < 24; ++id)
    expected += "buttondriver: button id " + std::to_string(id) + " must have a non-zero time to use blinking.";
  EXPECT_EQ(output.take(), expected);
}

TEST_F(LEDStateTest, without_buttons_nothing_happens) {
  dispatcher->setButtons({});
  test::CapturedOutput output;
  dispatcher->setLEDState(-1, 1, 0);
  EXPECT_EQ(output.take(), "");
}

TEST_F(LEDStateTest, the_timer_itself_blinks) {
  dispatcher->setLEDState(0, -1, 20);
  std::size_t sent = 0;
  EXPECT_TRUE(test::process_events_until([&] {
    sent += finishedTransfers().size();
    return sent >= 4;
  }));
}

} // namespace
} // namespace buttondriver
