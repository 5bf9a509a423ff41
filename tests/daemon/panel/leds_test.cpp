// SPDX-License-Identifier: Apache-2.0
#include "panel/leds.h"

#include "panel_test.h"
#include "system_calls.h"

namespace buttondriver::panel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Row {
  const char *condition;
  int led_id;
  unsigned state;
  const char *button;    // what the LED command register gets
  const char *indicator; // the same for a status indicator
};

void PrintTo(const Row &row, std::ostream *out) { *out << row.condition; }

class LedCommandTest : public PanelTest, public testing::WithParamInterface<Row> {};

TEST_P(LedCommandTest, command_is_id_kind_and_on_bit_cut_to_a_byte) {
  EXPECT_EQ(led_set_button_state(GetParam().led_id, GetParam().state), 0);
  EXPECT_EQ(led_set_status_indicator(GetParam().led_id, GetParam().state), 0);
  EXPECT_THAT(device.takeLines(), ElementsAre(std::string("w 0900 1 ") + GetParam().button,
                                              std::string("w 0900 1 ") + GetParam().indicator));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LedCommandTest,
    testing::Values(Row{"first off", 0, 0, "4000", "8000"}, Row{"first on", 0, 1, "6000", "a000"},
                    Row{"fifth on", 5, 1, "6500", "a500"}, Row{"last on", 31, 1, "7f00", "bf00"},
                    Row{"last off", 31, 0, "5f00", "9f00"}, Row{"state 2", 5, 2, "4500", "8500"},
                    Row{"state 33", 5, 33, "4500", "8500"}, Row{"state -1", 5, 0xFFFFFFFF, "4500", "8500"},
                    Row{"id 32 off looks on", 32, 0, "6000", "a000"},
                    Row{"id 32 on carries into the kind", 32, 1, "8000", "c000"},
                    Row{"id 64 off", 64, 0, "8000", "c000"}, Row{"id 191 on carries out", 191, 1, "1f00", "5f00"},
                    Row{"id 256 is 0", 256, 1, "6000", "a000"}, Row{"id -1", -1, 0, "3f00", "7f00"},
                    Row{"highest id", 2147483647, 1, "5f00", "9f00"},
                    Row{"lowest id", -2147483647 - 1, 1, "6000", "a000"}));

class LedsTest : public PanelTest {};

TEST_F(LedsTest, wait_50_microseconds_after_a_button_led) {
  Lines events;
  device.before_transfer = [&](TransferRecord &) { events.emplace_back("transfer"); };
  const system_calls::Restore restore;
  system_calls::usleep = [&](unsigned microseconds) {
    events.push_back("pause of " + std::to_string(microseconds));
    return 7;
  };
  EXPECT_EQ(led_set_button_state(0, 1), 7);
  EXPECT_EQ(led_set_button_state(0, 0), 7);
  EXPECT_THAT(events, ElementsAre("transfer", "pause of 50", "transfer", "pause of 50"));
}

TEST_F(LedsTest, do_not_wait_after_indicators) {
  int pauses = 0;
  const system_calls::Restore restore;
  system_calls::usleep = [&](unsigned) { return ++pauses; };
  EXPECT_EQ(led_set_status_indicator(0, 1), 0);
  EXPECT_EQ(led_set_toggle_indicator(0, 1), 0);
  EXPECT_EQ(device.take().size(), 2U);
  EXPECT_EQ(pauses, 0);
}

TEST_F(LedsTest, return_the_transfer_s_result_for_a_status_indicator_only) {
  device.result = -1;
  EXPECT_EQ(led_set_button_state(0, 1), 0);
  EXPECT_EQ(led_set_status_indicator(0, 1), -1);
  EXPECT_EQ(led_set_toggle_indicator(0, 1), 0);
}

TEST_F(LedsTest, toggle_indicators_are_written_together) {
  EXPECT_EQ(led_set_toggle_indicator(1, 1), 0);
  EXPECT_EQ(led_set_toggle_indicator(0, 1), 0);
  EXPECT_EQ(led_set_toggle_indicator(0, 1), 0);
  EXPECT_EQ(led_set_toggle_indicator(1, 0), 0);
  EXPECT_EQ(led_set_toggle_indicator(0, 0), 0);
  EXPECT_THAT(device.takeLines(),
              ElementsAre("w 1003 1 0002", "w 1003 1 0003", "w 1003 1 0003", "w 1003 1 0001", "w 1003 1 0000"));
}

TEST_F(LedsTest, toggle_indicator_out_of_range_is_reported_before_its_state) {
  led_set_toggle_indicator(0, 1);
  device.take();
  EXPECT_EQ(led_set_toggle_indicator(2, 1), 1);
  EXPECT_EQ(led_set_toggle_indicator(2, 2), 1);
  EXPECT_EQ(led_set_toggle_indicator(0xFFFFFFFF, 0), 1);
  EXPECT_EQ(led_set_toggle_indicator(0, 2), 2);
  EXPECT_EQ(led_set_toggle_indicator(1, 0xFFFFFFFF), 2);
  EXPECT_THAT(device.takeLines(), IsEmpty());
  EXPECT_EQ(toggle_indicator_bits, 1U);
}

} // namespace
} // namespace buttondriver::panel
