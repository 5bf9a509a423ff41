// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/link_fixture.h"

#include <gmock/gmock.h>

namespace buttondriver::bridge::test {

using testing::Each;
using testing::ElementsAre;

class PanelLinkBusyTest : public LinkFixture {
protected:
  std::vector<QByteArray> messagesAfter(std::size_t count) const {
    return {panel.messages().begin() + static_cast<std::ptrdiff_t>(count), panel.messages().end()};
  }
};

TEST_F(PanelLinkBusyTest, the_newest_wins_of_lamps_and_lines_that_wait) {
  startReleased();
  const QByteArray message(30000, 'p');
  const auto sent = static_cast<std::size_t>(jam(message));
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(link->send("lamp", lamp("lamp " + QByteArray::number(i)), true), Taken::yes);
    EXPECT_EQ(link->send("line", line("line " + QByteArray::number(i)), true), Taken::yes);
  }
  EXPECT_EQ(link->numbers().waiting_commands, 5);
  EXPECT_EQ(link->numbers().replaced, 198U);
  EXPECT_EQ(link->send("picture", picture("last"), true), Taken::yes);
  EXPECT_EQ(link->send("line", line("over it"), true), Taken::yes);
  panel.readOn();
  ASSERT_TRUE(process_events_until([&] { return panel.messages().size() == sent + 3; }));
  EXPECT_THAT(std::vector<QByteArray>(panel.messages().begin(), panel.messages().end() - 3), Each(message));
  EXPECT_THAT(messagesAfter(sent), ElementsAre("lamp 99", "last", "over it"));
  EXPECT_EQ(link->numbers().waiting_commands, 0);
  EXPECT_EQ(link->numbers().waiting_bytes, 0);
}

TEST_F(PanelLinkBusyTest, a_panel_that_could_not_take_all_is_restored_once_when_the_rest_is_sent) {
  startReleased();
  const QByteArray message(30000, 'p');
  const auto sent = static_cast<std::size_t>(jam(message));
  std::size_t waiting = 0;
  while (link->send("picture", picture(message), true) == Taken::yes)
    ++waiting;
  EXPECT_EQ(link->numbers().waiting_bytes / 30004, PanelLink::most_waiting_bytes / 30004);
  EXPECT_EQ(link->send("lamp", lamp("refused"), true), Taken::no_room);
  EXPECT_EQ(link->send("do/lamp", lamp("once"), false), Taken::yes);
  EXPECT_EQ(link->numbers().refused, 2U);
  wanted = {{"lamp", lamp("A")}, {"picture", picture("P")}};
  EXPECT_EQ(restores, 1);
  panel.readOn();
  ASSERT_TRUE(process_events_until([this] { return restored == 2; }));
  EXPECT_EQ(restores, 2);
  ASSERT_EQ(panel.messages().size(), sent + waiting + 3);
  EXPECT_THAT(messagesAfter(sent + waiting), ElementsAre("once", "A", "P"));
  EXPECT_EQ(link->send("lamp", lamp("B"), true), Taken::yes);
  ASSERT_TRUE(process_events_until([&] { return panel.messages().size() == sent + waiting + 4; }));
  EXPECT_EQ(panel.connections(), 1);
}

TEST_F(PanelLinkBusyTest, a_thousand_commands_wait_and_one_that_is_not_kept_is_no_reason_to_restore) {
  startReleased();
  const auto sent = static_cast<std::size_t>(jam(QByteArray(30000, 'p')));
  while (link->numbers().waiting_commands < PanelLink::most_waiting_commands)
    ASSERT_EQ(link->send("p", picture("p"), true), Taken::yes);
  EXPECT_EQ(link->send("do/p", picture("q"), false), Taken::no_room);
  panel.readOn();
  ASSERT_TRUE(process_events_until([this] { return link->numbers().waiting_commands == 0; }));
  ASSERT_TRUE(process_events_until([&] { return panel.messages().size() == sent + 997; }));
  process_ready_events();
  EXPECT_EQ(restores, 1);
}

TEST_F(PanelLinkBusyTest, a_connection_that_breaks_in_a_frame_loses_what_is_not_kept_and_begins_anew) {
  startReleased();
  jam(QByteArray(30000, 'p'));
  EXPECT_EQ(link->send("do/one", lamp("1"), false), Taken::yes);
  EXPECT_EQ(link->send("kept", lamp("k"), true), Taken::yes);
  EXPECT_EQ(link->send("do/two", lamp("2", 2), false), Taken::yes);
  wanted = {{"a", lamp("A")}};
  panel.close();
  ASSERT_TRUE(process_events_until([this] { return availability == "+-"; }));
  EXPECT_EQ(link->numbers().waiting_commands, 0);
  EXPECT_EQ(link->numbers().waiting_bytes, 0);
  panel.reads = true;
  panel.openAgain();
  ASSERT_TRUE(process_events_until([this] { return restored == 2; }));
  EXPECT_THAT(panel.messages(), ElementsAre("A"));
  EXPECT_EQ(panel.unfinished(), 0);
  EXPECT_THAT(lost, ElementsAre("do/one", "do/two"));
  EXPECT_EQ(availability, "+-+");
  EXPECT_EQ(link->numbers().waiting_commands, 0);
}

TEST_F(PanelLinkBusyTest, what_is_not_kept_and_is_left_in_the_socket_is_lost_as_well) {
  startReleased();
  panel.reads = false;
  // Most of it does not leave before the panel reads.
  EXPECT_EQ(link->send("do/picture", picture(QByteArray(4000000, 'p')), false), Taken::yes);
  process_ready_events();
  EXPECT_EQ(link->numbers().waiting_commands, 0);
  panel.hangUp();
  ASSERT_TRUE(process_events_until([this] { return !lost.empty(); }));
  EXPECT_THAT(lost, ElementsAre("do/picture"));
}

TEST_F(PanelLinkBusyTest, pings_go_with_commands_that_keep_it_busy) {
  startReleased({1, 600000, 1, 20});
  const QByteArray message(30000, 'p');
  const int before = panel.pings();
  std::size_t sent = 0;
  ASSERT_TRUE(process_events_until([&] {
    while (link->numbers().waiting_commands < 5) {
      link->send("picture", picture(message), true);
      ++sent;
    }
    return panel.pings() >= before + 5;
  }));
  EXPECT_GT(link->numbers().waiting_commands, 0);
  ASSERT_TRUE(process_events_until([&] { return panel.messages().size() == sent; }));
  EXPECT_THAT(panel.messages(), Each(message));
}

} // namespace buttondriver::bridge::test
