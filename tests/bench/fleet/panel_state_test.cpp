// SPDX-License-Identifier: Apache-2.0
#include "fleet/panels/panel_state.h"

#include "support/hex.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace buttondriver::fleet {
namespace {

PanelState after(const std::vector<const char *> &messages) {
  PanelState state;
  for (const char *message : messages) {
    const std::string bytes = test::from_hex(message);
    state.take({bytes.data(), bytes.size()});
  }
  return state;
}

// "Hi" in line 7 of screen 2, white on black, and black on white; in line 0 of all screens.
const char *const hi = "0000000f 00000002 00000007 00000001 00000003 486900";
const char *const inverse_hi = "0000000f 00000002 00000007 00000000 00000003 486900";
const char *const hi_everywhere = "0000000f ffffffff 00000000 00000001 00000003 486900";
const char *const black_2 = "00000010 00000002";
const char *const black = "00000010 ffffffff";
const char *const button_23_on = "00000011 00000017 00000001 00000000";
const char *const button_23_off = "00000011 00000017 00000000 00000000";
const char *const all_blink = "00000011 ffffffff ffffffff 000001f4";
const char *const status_31_on = "00000015 0000001f 00000001";
const char *const status_31_off = "00000015 0000001f 00000000";
const char *const toggle_1_on = "00000016 00000001 00000001";

struct Row {
  std::vector<const char *> messages;
  std::function<void(PanelState &)> change;
};

TEST(PanelStateTest, is_what_the_messages_have_left) {
  const Row rows[] = {
      {{hi},
       [](PanelState &state) {
         state.screens[2][7] = {"Hi", false};
       }},
      {{hi, inverse_hi},
       [](PanelState &state) {
         state.screens[2][7] = {"Hi", true};
       }},
      {{hi_everywhere},
       [](PanelState &state) {
         for (auto &screen : state.screens)
           screen[0].text = "Hi";
       }},
      {{hi_everywhere, black_2},
       [](PanelState &state) {
         state.screens[0][0].text = "Hi";
         state.screens[1][0].text = "Hi";
       }},
      {{hi, hi_everywhere, black}, [](PanelState &) {}},
      {{button_23_on}, [](PanelState &state) { state.buttons[23] = 1; }},
      {{all_blink}, [](PanelState &state) { state.buttons.fill(-500); }},
      {{all_blink, button_23_off},
       [](PanelState &state) {
         state.buttons.fill(-500);
         state.buttons[23] = 0;
       }},
      {{status_31_on, toggle_1_on},
       [](PanelState &state) {
         state.status[31] = true;
         state.toggles[1] = true;
       }},
      {{status_31_on, status_31_off}, [](PanelState &) {}},
  };
  for (const Row &row : rows) {
    PanelState expected;
    row.change(expected);
    EXPECT_TRUE(after(row.messages) == expected) << row.messages.back();
  }
}

TEST(PanelStateTest, is_not_changed_by_what_the_panel_has_not) {
  const char *const messages[] = {
      "",
      "0000",
      "0000000c",                                            // a ping
      "0000000f 00000003 00000000 00000001 00000003 486900", // screen 3
      "0000000f 00000000 00000008 00000001 00000003 486900", // line 8
      "0000000f 00000000 ffffffff 00000001 00000003 486900", // line -1
      "0000000f fffffffe 00000000 00000001 00000003 486900", // screen -2
      "00000011 00000018 00000001 00000000",                 // button 24
      "00000015 00000020 00000001",                          // status LED 32
      "00000015 fffffffe 00000001",                          // status LED -2
      "00000016 00000002 00000001",                          // toggle indicator 2
  };
  for (const char *message : messages)
    EXPECT_TRUE(after({message}) == PanelState()) << message;
}

TEST(PanelStateTest, has_no_more_of_a_text_than_has_come) {
  EXPECT_EQ(after({"0000000f 00000000 00000000 00000001 ffffffff 4869"}).screens[0][0].text, "Hi");
  EXPECT_EQ(after({"0000000f 00000000 00000000 00000001 00000001 4869"}).screens[0][0].text, "H");
}

TEST(PanelStateTest, differs_by_each_of_its_parts) {
  for (const char *message : {hi, inverse_hi, button_23_on, status_31_on, toggle_1_on})
    EXPECT_FALSE(after({message}) == PanelState()) << message;
  EXPECT_FALSE(after({hi}) == after({inverse_hi}));
}

} // namespace
} // namespace buttondriver::fleet
