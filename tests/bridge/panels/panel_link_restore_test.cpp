// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/link_fixture.h"

#include <gmock/gmock.h>

#include <utility>

namespace buttondriver::bridge::test {

using testing::ElementsAre;

class PanelLinkRestoreTest : public LinkFixture {};

TEST_F(PanelLinkRestoreTest, sends_nothing_before_it_is_released) {
  wanted = {{"a", lamp("A")}, {"b", line("B")}};
  start();
  ASSERT_TRUE(process_events_until([this] { return availability == "+"; }));
  EXPECT_EQ(link->send("a", lamp("x"), true), Taken::not_connected);
  link->restore();
  EXPECT_EQ(restores, 0);
  link->release();
  link->release();
  ASSERT_TRUE(process_events_until([this] { return restored == 1; }));
  EXPECT_EQ(restores, 1);
  EXPECT_THAT(panel.messages(), ElementsAre("A", "B"));
  EXPECT_EQ(panel.pings(), 2);
  EXPECT_EQ(link->numbers().sent, 2U);
}

TEST_F(PanelLinkRestoreTest, sends_what_is_wanted_whenever_the_panel_comes_up) {
  start();
  link->release();
  EXPECT_EQ(link->send("a", lamp("x"), true), Taken::not_connected);
  wanted = {{"a", lamp("A")}};
  ASSERT_TRUE(process_events_until([this] { return restored == 1; }));
  EXPECT_EQ(link->send("a", lamp("B"), true), Taken::yes);
  ASSERT_TRUE(process_events_until([this] { return panel.messages().size() == 2; }));
  EXPECT_THAT(panel.messages(), ElementsAre("A", "B"));
  panel.hangUp();
  wanted = {{"a", lamp("C")}};
  ASSERT_TRUE(process_events_until([this] { return restored == 2; }));
  EXPECT_THAT(panel.messages(), ElementsAre("C"));
}

TEST_F(PanelLinkRestoreTest, is_told_when_there_was_nothing_to_send) {
  startReleased();
  link->restore();
  ASSERT_TRUE(process_events_until([this] { return restored == 2; }));
  EXPECT_EQ(restores, 2);
  EXPECT_TRUE(panel.messages().empty());
}

TEST_F(PanelLinkRestoreTest, takes_the_place_of_what_waits_and_is_kept) {
  startReleased();
  const int sent = jam(QByteArray(30000, 'p'));
  EXPECT_EQ(link->send("do/a", lamp("once"), false), Taken::yes);
  EXPECT_EQ(link->send("a", lamp("kept"), true), Taken::yes);
  wanted = {{"a", lamp("A")}, {"b", line("B")}};
  link->restore();
  EXPECT_EQ(link->numbers().waiting_commands, 3);
  EXPECT_EQ(link->send("a", lamp("newer"), true), Taken::yes);
  panel.readOn();
  ASSERT_TRUE(process_events_until([this] { return restored == 2; }));
  ASSERT_EQ(panel.messages().size(), static_cast<std::size_t>(sent)); // three pictures less, three others
  const std::vector<QByteArray> end(panel.messages().end() - 3, panel.messages().end());
  EXPECT_THAT(end, ElementsAre("once", "newer", "B"));
}

TEST_F(PanelLinkRestoreTest, is_told_when_the_panel_has_all_of_it) {
  startReleased();
  panel.reads = false;
  wanted = QVector<TopicCommand>(100, {"p", picture(QByteArray(30000, 'p'))});
  link->restore();
  process_ready_events();
  EXPECT_GT(link->numbers().waiting_commands, 0);
  panel.readOn();
  ASSERT_TRUE(process_events_until([this] { return restored == 2; }));
  EXPECT_EQ(panel.messagesBeforeLastPing(), 100U);
}

TEST_F(PanelLinkRestoreTest, an_older_restoration_does_not_count_for_a_newer_one) {
  startReleased();
  panel.answers_pings = false;
  link->restore();
  ASSERT_TRUE(process_events_until([this] { return panel.pings() == 3; }));
  link->restore(); // while the answer to the ping of the last one is missing
  panel.write(QByteArray::fromHex("0000000400000001"));
  ASSERT_TRUE(process_events_until([this] { return panel.pings() == 4; }));
  process_ready_events();
  EXPECT_EQ(restored, 1);
  panel.write(QByteArray::fromHex("0000000400000001"));
  ASSERT_TRUE(process_events_until([this] { return restored == 2; }));
}

/// Restores before the first event of the link that comes next.
class Restorer : public QObject {
public:
  explicit Restorer(PanelLink &link) : _link(link) { _link.installEventFilter(this); }
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() == QEvent::MetaCall && !std::exchange(_has_restored, true))
      _link.restore();
    return false;
  }
  bool hasRestored() const { return _has_restored; }

private:
  PanelLink &_link;
  bool _has_restored = false;
};

TEST_F(PanelLinkRestoreTest, is_not_told_of_one_that_is_over_when_another_has_begun) {
  startReleased();
  panel.answers_pings = false;
  link->restore();
  ASSERT_TRUE(process_events_until([this] { return panel.pings() == 3; }));
  Restorer restorer(*link); // between the answer and the signal
  panel.write(QByteArray::fromHex("0000000400000001"));
  ASSERT_TRUE(process_events_until([this] { return panel.pings() == 4; }));
  process_ready_events();
  EXPECT_TRUE(restorer.hasRestored());
  EXPECT_EQ(restored, 1);
  panel.write(QByteArray::fromHex("0000000400000001"));
  ASSERT_TRUE(process_events_until([this] { return restored == 2; }));
}

} // namespace buttondriver::bridge::test
