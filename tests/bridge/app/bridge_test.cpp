// SPDX-License-Identifier: Apache-2.0
// What a bridge makes of a broker: its end, its return, and messages that nobody should have sent.

#include "bridge_fixture.h"

#include "bridge/broker/watched_connection.h"
#include "bridge/topics/topic_commands.h"
#include "pictures/bmp_file.h"
#include "pictures/picture.h"
#include "support/event_loop.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace buttondriver::bridge {
namespace {

using buttondriver::test::process_events_until;

class BridgeBrokerTest : public BridgeFixture {};

TEST_F(BridgeBrokerTest, the_order_is_published_before_the_end) {
  times.order_pause_ms = 3'600'000;
  startBridge();
  keep("hall/led/all", "off");
  keep("hall/led/5", "on");
  expectWanted("hall", {"hall/led/all", "hall/led/5"});
  bridge->end();
  expectLast("p/hall/order", R"(["hall/led/all"])");
  expectLast("p/hall/availability", "offline");
  expectLast("p/bridge/1/availability", "offline");
}

TEST_F(BridgeBrokerTest, a_bridge_that_is_gone_without_a_word_is_told_by_the_last_will) {
  startBridge();
  expectLast("p/bridge/1/availability", "online");
  bridge.reset();
  expectLast("p/bridge/1/availability", "offline");
  startBridge();
  expectLast("p/bridge/1/availability", "online");
}

TEST_F(BridgeBrokerTest, discovery_of_many_panels_is_whole) {
  constexpr int panels = 60;
  configuration.panels.clear();
  for (int i = 0; i < panels; ++i)
    configuration.panels.insert("panel-" + QByteArray::number(i), PanelAddress{QStringLiteral("127.0.0.1"), 1});
  configuration.discovery_prefix = "d";
  startBridge();
  int most_waiting = 0;
  EXPECT_TRUE(process_events_until([&] {
    most_waiting = std::max(most_waiting, bridge->numbers().waiting_for_broker);
    return topicsBelow("d/") == panels * 84;
  })) << topicsBelow("d/");
  EXPECT_GT(most_waiting, 0);
  EXPECT_LE(most_waiting, 1000); // others have to get through too
}

TEST_F(BridgeBrokerTest, discovery_comes_again_where_a_broker_has_lost_it_and_only_there) {
  configuration.discovery_prefix = "d";
  startBridge();
  keep("hall/led/5", "on");
  expectCount("p/hall/order", 1);
  ASSERT_TRUE(process_events_until([this] { return topicsBelow("d/") == 2 * 84; }));
  forget();
  broker.end(SIGKILL);
  ASSERT_TRUE(broker.start());
  waitForClient();
  EXPECT_TRUE(process_events_until([this] { return topicsBelow("d/") == 2 * 84; })) << topicsBelow("d/");
}

class LastingBrokerTest : public BridgeFixture {
protected:
  LastingBrokerTest() : BridgeFixture(options()) {}

  static buttondriver::test::MosquittoBroker::Options options() {
    auto options = BridgeFixture::options();
    options.has_persistence = true;
    return options;
  }
};

TEST_F(LastingBrokerTest, what_is_there_is_not_published_again) {
  configuration.discovery_prefix = "d";
  configuration.panels.remove("yard");
  startBridge();
  keep("hall/led/5", "on");
  expectCount("p/hall/order", 1);
  ASSERT_TRUE(process_events_until([this] { return topicsBelow("d/") == 84; }));
  expectLast("p/bridge/1/availability", "online");
  const int before = syncs;
  bridge->end();
  expectLast("p/bridge/1/availability", "offline");
  forget();
  ASSERT_TRUE(bridge->start(configuration));
  ASSERT_TRUE(process_events_until([&] { return syncs > before; }));
  keep("hall/status/1", "on");
  expectWanted("hall", {"hall/led/5", "hall/status/1"});
  expectLast("p/hall/status/1", "on");
  EXPECT_EQ(0, topicsBelow("d/"));
  EXPECT_EQ(0, count("p/hall/led/5"));
  EXPECT_EQ(0, count("p/hall/order"));
}

TEST_F(LastingBrokerTest, what_a_broker_that_was_away_kept_of_a_panel_that_went_meanwhile_is_cleared_later) {
  configuration.discovery_prefix = "d";
  startBridge();
  expectLast("p/yard/availability", "online");
  ASSERT_TRUE(process_events_until([this] { return topicsBelow("d/") == 2 * 84; }));
  broker.end();
  ASSERT_TRUE(process_events_until([this] { return !bridge->numbers().is_connected; }));
  configuration.panels.remove("yard");
  ASSERT_TRUE(bridge->change(configuration));
  forget();
  ASSERT_TRUE(broker.start());
  waitForClient();
  expectLast("p/yard/availability", "offline");
  EXPECT_TRUE(process_events_until([this] { return topicsBelow("d/switch/p__yard/") == 0; }));
}

TEST_F(LastingBrokerTest, what_was_published_while_the_bridge_was_away_is_shown) {
  startBridge();
  keep("hall/led/5", "on");
  const QByteArray message = command_of("led/5", "on")->frame.mid(4);
  ASSERT_TRUE(process_events_until([&] { return !hall.messages().empty() && hall.messages().back() == message; }));
  const std::size_t before = hall.messages().size();
  expectCount("p/hall/order", 1);
  bridge->end();
  keep("hall/led/6", "on");
  expectLast("p/hall/led/6", "on");
  ASSERT_TRUE(bridge->start(configuration));
  EXPECT_TRUE(process_events_until([&] { return hall.messages().size() == before + 2; })) << hall.messages().size();
  EXPECT_EQ(1, hall.connections());
}

TEST_F(LastingBrokerTest, what_is_kept_and_wrong_changes_nothing_also_after_a_comparison) {
  startBridge();
  keep("hall/led/3", "on");
  keep("hall/led/4", "on");
  expectWanted("hall", {"hall/led/3", "hall/led/4"});
  expectCount("p/hall/order", 1);
  publish("hall/led/3", "ON", true);
  publish("hall/led/4", QByteArray(8 * 1024 * 1024 + 1, 'x'), true);
  expectCount("p/hall/error", 2);
  bridge->end();
  syncs = 0;
  ASSERT_TRUE(bridge->start(configuration));
  ASSERT_TRUE(process_events_until([this] { return syncs > 0; }));
  expectWanted("hall", {"hall/led/3", "hall/led/4"});
}

TEST_F(BridgeBrokerTest, an_order_that_somebody_removes_is_published_again) {
  startBridge();
  keep("hall/led/all", "off");
  keep("hall/led/5", "on");
  expectLast("p/hall/order", R"(["hall/led/all"])");
  publish("hall/order", "", true);
  expectLast("p/hall/order", "");
  expectLast("p/hall/order", R"(["hall/led/all"])");
}

TEST_F(BridgeBrokerTest, an_empty_payload_that_is_not_retained_takes_nothing_back_that_is) {
  startBridge();
  keep("hall/led/5", "on");
  expectWanted("hall", {"hall/led/5"});
  publish("hall/led/5", "", false);
  expectCount("p/hall/error", 1);
  EXPECT_THAT(last("p/hall/error").toStdString(), testing::HasSubstr("the broker goes on keeping this"));
  expectWanted("hall", {"hall/led/5"});
}

class EachProtocolTest : public BridgeFixture, public testing::WithParamInterface<bool> {
protected:
  EachProtocolTest() { configuration.broker.is_mqtt_5 = GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(Each, EachProtocolTest, testing::Values(true, false),
                         [](const auto &row) { return row.param ? "mqtt_5" : "mqtt_3_1_1"; });

TEST_P(EachProtocolTest, what_was_taken_back_while_the_bridge_was_away_is_gone) {
  startBridge();
  keep("hall/led/5", "on");
  keep("hall/led/6", "on");
  expectWanted("hall", {"hall/led/5", "hall/led/6"});
  bridge->end();
  expectCount("p/hall/order", 1);
  keep("hall/led/5", "");
  expectLast("p/hall/led/5", "");
  const int before = syncs;
  ASSERT_TRUE(bridge->start(configuration));
  ASSERT_TRUE(process_events_until([&] { return syncs > before; }));
  EXPECT_EQ((QVector<QByteArray>{"hall/led/6"}), wanted("hall"));
}

/// A BMP file of 100 x 100 pixels, 29 KiB.
QByteArray picture() {
  return QByteArray::fromHex(
             "424d66750000000000003600000028000000640000006400000001001800000000003075000000000000000000"
             "000000000000000000") +
         QByteArray(100 * 100 * 3, 'x');
}

TEST_F(BridgeBrokerTest, a_broker_gets_back_more_than_may_wait_for_it_at_once) {
  // 32 MiB may wait.
  constexpr int panels = 5;
  constexpr int topics = 260;
  configuration.panels.clear();
  for (int i = 0; i < panels; ++i)
    configuration.panels.insert("panel-" + QByteArray::number(i), PanelAddress{QStringLiteral("127.0.0.1"), 1});
  startBridge();
  for (int i = 0; i < panels; ++i) {
    const QByteArray name = "panel-" + QByteArray::number(i);
    for (int k = 0; k < topics; ++k)
      keep(name + "/screen/0/image/" + QByteArray::number(k / 20) + '/' + QByteArray::number(k % 20), picture());
    ASSERT_TRUE(process_events_until([&] { return wanted(name).size() == topics; })) << wanted(name).size();
    expectCount("p/" + name + "/order", 1);
  }
  broker.end(SIGKILL);
  forget();
  ASSERT_TRUE(broker.start());
  waitForClient();
  EXPECT_TRUE(process_events_until([this] { return topicsBelow("p/panel-") >= panels * (topics + 2); }))
      << topicsBelow("p/panel-");
}

TEST_F(BridgeBrokerTest, a_payload_beyond_all_bounds_is_answered) {
  startBridge();
  publish("hall/screen/0/image", QByteArray(8 * 1024 * 1024 + 1, 'x'));
  expectCount("p/hall/error", 1);
  EXPECT_TRUE(last("p/hall/error").contains("p/hall/screen/0/image")) << last("p/hall/error").toStdString();
  EXPECT_EQ(1U, bridge->numbers().wrong_messages);
  EXPECT_EQ(1U, bridge->numbers().messages);
  WatchedConnection late;
  late.filters = {"p/hall/error"};
  late.marker_topic = "marker";
  late.startAndCollect(settings_for(broker, "late"));
  EXPECT_TRUE(late.messages.empty()) << "an error is not kept";
}

TEST_F(BridgeBrokerTest, rubbish_is_answered_or_passed_over_and_stops_nothing) {
  configuration.groups = {{"doors", {"hall"}}};
  keep("hall/do/led/5", "on"); // the broker will hand it out
  keep("hall/order", "[\"hall/led/5\", 7, {}");
  keep("hall/availability", "perhaps");
  keep("hall/statistics/x", "y");
  keep("hall", "x");
  keep("hall/", "x");
  keep("hall/x", "y");
  keep("group/doors", "x");
  keep("group/doors/x", "y");
  keep("bridge/1/x", "y");
  expectLast("p/bridge/1/x", "y");
  startBridge();
  expectCount("p/hall/error", 2);
  expectCount("p/group/doors/error", 1);
  keep("hall/led/5", "on");
  expectWanted("hall", {"hall/led/5"});
  expectLast("p/hall/order", "[]");
  expectLast("p/hall/availability", "online");
  EXPECT_EQ(2, count("p/hall/error"));
  EXPECT_EQ(1, count("p/group/doors/error"));
  EXPECT_EQ(3U, bridge->numbers().wrong_messages);
}

QByteArray blue_screen(int blue) {
  return write_screen_bmp(Picture(QSize(128, 128), {0, 0, static_cast<std::uint8_t>(blue)}));
}

TEST_F(BridgeBrokerTest, what_a_slow_panel_has_no_room_for_is_answered_and_shown_when_it_has_caught_up) {
  startBridge();
  hall.reads = false;
  constexpr int pictures = 500; // 24 MB: the sockets take some, and 8 MiB may wait
  for (int i = 0; i < pictures; ++i)
    keep("hall/screen/0/image", blue_screen(i % 250));
  keep("hall/screen/0/image", blue_screen(255));
  keep("yard/led/5", "on");
  expectWanted("yard", {"yard/led/5"});
  expectCount("p/hall/error", 1);
  EXPECT_TRUE(last("p/hall/error").contains("too much waits for the panel")) << last("p/hall/error").toStdString();
  const PanelNumbers &numbers = bridge->fleet().find("hall")->numbers();
  EXPECT_GT(numbers.waiting_bytes, PanelLink::most_waiting_bytes / 2); // the sockets go on taking some
  EXPECT_LE(numbers.waiting_bytes, PanelLink::most_waiting_bytes);

  hall.readOn();
  EXPECT_TRUE(process_events_until(
      [this] { return !hall.messages().empty() && hall.messages().back().endsWith(blue_screen(255)); }));
  EXPECT_EQ(0, numbers.waiting_bytes);
}

TEST_F(BridgeBrokerTest, a_broker_that_came_back_is_told_all_numbers_again) {
  configuration.statistics_seconds = 1;
  startBridge();
  expectCount("p/hall/statistics/refused", 1);
  broker.end(SIGKILL);
  forget();
  ASSERT_TRUE(broker.start());
  waitForClient();
  expectCount("p/hall/statistics/refused", 1);
  EXPECT_EQ(1U, bridge->numbers().broker_reconnects);
}

TEST_F(BridgeBrokerTest, a_broker_that_lost_its_memory_is_given_what_it_kept_alone) {
  startBridge();
  keep("hall/led/5", "on");
  publish("hall/led/6", "on");
  expectWanted("hall", {"hall/led/5", "hall/led/6"});
  endBroker();
  forget();
  ASSERT_TRUE(broker.start());
  waitForClient();
  expectCount("p/hall/order", 1); // after all that was lost
  EXPECT_EQ("on", last("p/hall/led/5"));
  EXPECT_EQ(0, count("p/hall/led/6"));
}

TEST_F(BridgeBrokerTest, an_order_that_changes_all_the_time_is_published_now_and_then) {
  times.order_pause_ms = 300;
  startBridge();
  QTimer changing;
  int changes = 0;
  QObject::connect(&changing, &QTimer::timeout, [&] { keep("hall/led/all", ++changes % 2 == 0 ? "on" : "off"); });
  changing.start(10);
  keep("hall/led/5", "on");
  expectCount("p/hall/order", 1);
}

TEST_F(BridgeBrokerTest, the_record_of_the_order_comes_after_all_that_was_lost) {
  startBridge();
  for (int i = 0; i < 500; ++i)
    keep("hall/screen/0/part/" + QByteArray::number(i), R"({"line":0,"offset":0,"text":"x"})");
  ASSERT_TRUE(process_events_until([this] { return wanted("hall").size() == 500; }));
  expectCount("p/hall/order", 1);
  endBroker();
  bridge->end();
  ASSERT_TRUE(broker.start());
  waitForClient();
  publish("bridge/x", "x"); // the client has subscribed when this comes back
  expectLast("p/bridge/x", "x");
  forget();
  ASSERT_TRUE(bridge->start(configuration));
  expectCount("p/hall/order", 1);
  EXPECT_EQ(500, topicsBelow("p/hall/screen/"));
}

class OldProtocolTest : public BridgeFixture {
protected:
  OldProtocolTest() { configuration.broker.is_mqtt_5 = false; }
};

TEST_F(OldProtocolTest, what_the_bridge_itself_publishes_means_nothing_to_it) {
  configuration.statistics_seconds = 1;
  startBridge();
  keep("hall/led/all", "off");
  keep("hall/led/5", "on");
  expectLast("p/hall/order", R"(["hall/led/all"])");
  publish("hall/led/24", "on");
  expectCount("p/hall/error", 1);
  expectCount("p/hall/statistics/waiting_bytes", 1);
  keep("hall/status/1", "on");
  expectWanted("hall", {"hall/led/all", "hall/led/5", "hall/status/1"});
  EXPECT_EQ(1, count("p/hall/error"));
  EXPECT_EQ(4U, bridge->numbers().messages);
  EXPECT_EQ(1U, bridge->numbers().wrong_messages);
}

TEST_F(OldProtocolTest, a_broker_that_lost_its_memory_gets_it_back_in_order) {
  startBridge();
  keep("hall/led/all", "off");
  keep("hall/led/5", "on");
  expectLast("p/hall/order", R"(["hall/led/all"])");
  broker.end(SIGKILL);
  forget();
  ASSERT_TRUE(broker.start());
  waitForClient();
  expectLast("p/hall/led/5", "on");
  expectLast("p/hall/order", R"(["hall/led/all"])");
  EXPECT_EQ((QVector<QByteArray>{"hall/led/all", "hall/led/5"}), wanted("hall"));
}

TEST_F(OldProtocolTest, what_comes_back_of_a_group_changes_no_order) {
  configuration.groups = {{"doors", {"hall", "yard"}}};
  startBridge();
  keep("yard/led/all", "on");
  keep("group/doors/led/5", "off");
  keep("hall/led/all", "on");
  const QVector<QByteArray> in_hall{"group/doors/led/5", "hall/led/all"};
  const QVector<QByteArray> in_yard{"yard/led/all", "group/doors/led/5"};
  expectWanted("hall", in_hall);
  expectWanted("yard", in_yard);
  broker.end(SIGKILL);
  forget();
  ASSERT_TRUE(broker.start());
  waitForClient();
  expectLast("p/yard/led/all", "on");
  expectLast("p/yard/order", R"(["yard/led/all"])");
  EXPECT_EQ(in_hall, wanted("hall"));
  EXPECT_EQ(in_yard, wanted("yard"));
}

} // namespace
} // namespace buttondriver::bridge
