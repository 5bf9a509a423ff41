// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/link_fixture.h"
#include "support/scripted_peer.h"

namespace buttondriver::bridge::test {

class PanelLinkConnectionTest : public LinkFixture {};

TEST_F(PanelLinkConnectionTest, is_up_when_a_ping_is_answered) {
  panel.answers_pings = false;
  start();
  ASSERT_TRUE(process_events_until([this] { return panel.pings() == 1; }));
  EXPECT_FALSE(link->numbers().is_up);
  EXPECT_LT(link->numbers().ping_seconds, 0);
  panel.write(QByteArray::fromHex("00000004000000"));
  process_ready_events();
  EXPECT_FALSE(link->numbers().is_up);
  panel.write(QByteArray::fromHex("01"));
  ASSERT_TRUE(process_events_until([this] { return availability == "+"; }));
  EXPECT_GT(link->numbers().ping_seconds, 0);
  EXPECT_EQ(link->numbers().reconnects, 0U);
}

TEST_F(PanelLinkConnectionTest, finds_a_panel_by_its_name) {
  start(shortPauses(), QStringLiteral("localhost"));
  EXPECT_TRUE(process_events_until([this] { return availability == "+"; }));
}

TEST_F(PanelLinkConnectionTest, tries_until_the_panel_is_there) {
  panel.close();
  start();
  ASSERT_TRUE(process_events_until([this] { return reasons.size() == 4; }));
  EXPECT_EQ(availability, "");
  EXPECT_FALSE(reasons.first().isEmpty());
  panel.openAgain();
  EXPECT_TRUE(process_events_until([this] { return availability == "+"; }));
  EXPECT_EQ(link->numbers().reconnects, 0U);
}

TEST_F(PanelLinkConnectionTest, comes_back_when_the_panel_hangs_up) {
  startReleased();
  panel.write(QByteArray::fromHex("00000004")); // half an answer, which the next connection does not go on with
  process_ready_events();
  panel.hangUp();
  ASSERT_TRUE(process_events_until([this] { return availability == "+-+"; }));
  EXPECT_EQ(link->numbers().reconnects, 1U);
  EXPECT_EQ(panel.connections(), 2);
}

TEST_F(PanelLinkConnectionTest, leaves_a_panel_that_does_not_answer_at_all) {
  panel.answers_pings = false;
  start({600000, 20, 1, 20});
  ASSERT_TRUE(process_events_until([this] { return panel.connections() == 3; }));
  EXPECT_EQ(reasons.first(), "it does not answer");
  EXPECT_EQ(availability, "");
}

TEST_F(PanelLinkConnectionTest, leaves_a_panel_that_answers_no_more) {
  start({1, 500, 1, 20});
  ASSERT_TRUE(process_events_until([this] { return panel.pings() >= 3; }));
  panel.answers_pings = false;
  ASSERT_TRUE(process_events_until([this] { return !reasons.isEmpty(); }));
  EXPECT_EQ(reasons.first(), "it does not answer any more");
  panel.answers_pings = true;
  ASSERT_TRUE(process_events_until([this] { return availability == "+-+"; }));
}

TEST_F(PanelLinkConnectionTest, leaves_a_panel_whose_connection_does_not_come_about) {
  buttondriver::test::ScriptedPeer peer(buttondriver::test::ScriptedPeer::Door::jammed);
  PanelLink jammed("127.0.0.1", peer.port(), [] { return QVector<TopicCommand>(); }, {600000, 20, 1, 1});
  QStringList told;
  QObject::connect(&jammed, &PanelLink::brokeOff, &jammed, [&](const QString &reason) { told += reason; });
  jammed.start();
  ASSERT_TRUE(process_events_until([&] { return told.size() == 2; }));
  EXPECT_EQ(told, (QStringList{"it does not answer", "it does not answer"}));
}

TEST_F(PanelLinkConnectionTest, stays_with_a_panel_that_takes_commands_without_answering) {
  constexpr int timeout_ms = 1000;
  startReleased({1, timeout_ms, 1, 20});
  panel.answers_pings = false;
  jam(QByteArray(30000, 'p'));
  while (link->send("picture", picture(QByteArray(30000, 'p')), true) == Taken::yes) {
  }
  // For longer than its patience, it sees every now and then that some has been taken.
  int times_read = 0;
  QTimer reading;
  QObject::connect(&reading, &QTimer::timeout, &reading, [&] {
    panel.readOnce();
    ++times_read;
  });
  reading.start(timeout_ms / 50);
  ASSERT_TRUE(process_events_until([&] { return times_read == 110; }));
  reading.stop();
  EXPECT_EQ(availability, "+");
  ASSERT_TRUE(process_events_until([this] { return availability == "+-"; }));
  EXPECT_EQ(reasons, QStringList{"it does not answer any more"});
}

TEST_F(PanelLinkConnectionTest, the_first_pause_comes_again_when_the_panel_was_up) {
  panel.close();
  start({600000, 600000, 1, 1000000});
  ASSERT_TRUE(process_events_until([this] { return reasons.size() == 9; }));
  panel.openAgain();
  ASSERT_TRUE(process_events_until([this] { return availability == "+"; }));
  PanelStandIn other_panel;
  other_panel.closes_at_once = true;
  PanelLink steady("127.0.0.1", other_panel.port(), [] { return QVector<TopicCommand>(); }, {600000, 600000, 1, 1});
  steady.start();
  panel.hangUp();
  ASSERT_TRUE(process_events_until([this] { return availability == "+-+"; }));
  EXPECT_LT(other_panel.connections(), 60) << "the pause had grown";
}

class PanelLinkWrongAnswerTest : public LinkFixture, public testing::WithParamInterface<const char *> {};

TEST_P(PanelLinkWrongAnswerTest, ends_the_connection) {
  startReleased();
  panel.write(QByteArray::fromHex(GetParam()));
  ASSERT_TRUE(process_events_until([this] { return availability == "+-+"; }));
  EXPECT_EQ(reasons, QStringList{"it sent something else than answers to pings"});
}

INSTANTIATE_TEST_SUITE_P(Bytes, PanelLinkWrongAnswerTest,
                         testing::Values("ff", "0000000400000002", "0000000800000001", "0000000400000001"));

TEST_F(PanelLinkConnectionTest, waits_longer_and_longer_for_a_panel_that_closes_at_once) {
  panel.closes_at_once = true;
  PanelStandIn other_panel;
  other_panel.closes_at_once = true;
  PanelLink steady("127.0.0.1", other_panel.port(), [] { return QVector<TopicCommand>(); }, {600000, 600000, 1, 1});
  steady.start();
  start({600000, 600000, 1, 100000});
  // The pauses of 1 to 2^n milliseconds take as long as 2^n of the others, about.
  ASSERT_TRUE(process_events_until([&] { return other_panel.connections() == 200; }));
  EXPECT_LT(panel.connections(), 20);
  EXPECT_GT(panel.connections(), 3);
}

/// The system tells of an end only once: here, whoever writes.
TEST_F(PanelLinkConnectionTest, a_panel_that_went_is_noticed_also_when_something_is_sent_before_the_event_comes) {
  startReleased();
  panel.hangUp();
  EXPECT_EQ(link->send("a", lamp("A"), true), Taken::yes); // the system takes it
  EXPECT_EQ(link->send("once", lamp("B", 1), false), Taken::yes);
  EXPECT_EQ(link->send("c", lamp("C, which is longer", 2), true), Taken::yes);
  ASSERT_TRUE(process_events_until([this] { return restored == 2; }));
  EXPECT_EQ(availability, "+-+");
  EXPECT_EQ(lost, std::vector<QByteArray>{"once"});
  EXPECT_EQ(reasons.size(), 1);
}

TEST_F(PanelLinkConnectionTest, what_has_left_is_not_lost) {
  startReleased();
  panel.reads = false;
  const QByteArray message(4'000'000, 'p'); // which the system does not take at once
  EXPECT_EQ(link->send("do/picture", picture(message), false), Taken::yes);
  panel.readOn();
  ASSERT_TRUE(process_events_until([&] { return panel.messages().size() == 1; }));
  process_ready_events();
  panel.hangUp();
  ASSERT_TRUE(process_events_until([this] { return availability == "+-+"; }));
  EXPECT_TRUE(lost.empty());
}

TEST_F(PanelLinkConnectionTest, is_started_once) {
  startReleased();
  link->start();
  EXPECT_EQ(link->send("a", lamp("A"), true), Taken::yes);
}

TEST_F(PanelLinkConnectionTest, a_panel_may_move_before_the_start) {
  PanelStandIn other_place;
  PanelLink moved(
      "127.0.0.1", panel.port(), [] { return QVector<TopicCommand>(); }, shortPauses());
  moved.moveTo("127.0.0.1", other_place.port());
  process_ready_events();
  EXPECT_EQ(other_place.connections(), 0);
  moved.start();
  ASSERT_TRUE(process_events_until([&] { return moved.numbers().is_up; }));
  EXPECT_EQ(other_place.connections(), 1);
  EXPECT_EQ(panel.connections(), 0);
}

TEST_F(PanelLinkConnectionTest, the_first_pause_comes_again_at_another_place) {
  panel.close();
  start({600000, 600000, 1, 1000000});
  ASSERT_TRUE(process_events_until([this] { return reasons.size() == 9; }));
  PanelStandIn other_place;
  other_place.closes_at_once = true;
  PanelStandIn steady_panel;
  steady_panel.closes_at_once = true;
  PanelLink steady("127.0.0.1", steady_panel.port(), [] { return QVector<TopicCommand>(); }, {600000, 600000, 1, 1});
  steady.start();
  link->moveTo("127.0.0.1", other_place.port());
  ASSERT_TRUE(process_events_until([&] { return other_place.connections() == 3; }));
  EXPECT_LT(steady_panel.connections(), 60) << "the pause had grown";
}

} // namespace buttondriver::bridge::test
