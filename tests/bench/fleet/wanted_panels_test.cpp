// SPDX-License-Identifier: Apache-2.0
#include "fleet/measure/wanted_panels.h"

#include "fleet/panels/delays.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>

namespace buttondriver::fleet {
namespace {

TEST(WantedPanelsTest, a_line_is_a_topic_and_what_the_panel_shows) {
  WantedPanels panels(2);
  const Wish wish = panels.line(1, 2, 7, "ready");
  EXPECT_EQ(wish.topic, "buttondriver/p1/screen/2/line/7");
  EXPECT_EQ(wish.payload, "ready");
  EXPECT_EQ(panels.states()[1].screens[2][7].text, "ready");
  EXPECT_TRUE(panels.states()[0] == PanelState());
}

/// What `topic` shows in `state`, as a payload.
std::string shown_by(const std::string &topic, const std::vector<PanelState> &states) {
  std::smatch parts;
  EXPECT_TRUE(std::regex_match(topic, parts, std::regex("buttondriver/p(\\d+)/(\\w+)/(\\d+)(/line/(\\d+))?"))) << topic;
  const PanelState &state = states.at(std::stoul(parts[1]));
  const std::size_t place = std::stoul(parts[3]);
  if (parts[2] == "screen")
    return state.screens.at(place).at(std::stoul(parts[5])).text;
  if (parts[2] == "status")
    return state.status.at(place) ? "on" : "off";
  EXPECT_EQ(parts[2], "led");
  const int button = state.buttons.at(place);
  return button == 0 ? "off" : button == 1 ? "on" : "blink " + std::to_string(-button);
}

TEST(WantedPanelsTest, each_panel_has_to_show_the_last_payload_of_each_topic) {
  WantedPanels panels(3);
  std::map<std::string, std::string> last;
  std::map<std::string, int> kinds;
  for (int i = 0; i < 5000; ++i) {
    const Wish wish = panels.next();
    last[wish.topic] = wish.payload;
    ++kinds[age_of(wish.payload) ? "stamp" : wish.payload.substr(0, 5)];
  }
  EXPECT_EQ(panels.topics().size(), last.size());
  for (const auto &[topic, payload] : last) {
    EXPECT_EQ(shown_by(topic, panels.states()), payload) << topic;
    EXPECT_EQ(panels.topics().at(topic), payload) << topic;
  }
  EXPECT_EQ(last.size(), 3U * (24 + 32 + 24)) << "every lamp and line of every panel";
  EXPECT_NEAR(kinds["stamp"], 2500, 200);
  EXPECT_EQ(kinds.size(), 4U) << "stamps, on, off, blink";
}

} // namespace
} // namespace buttondriver::fleet
