// SPDX-License-Identifier: Apache-2.0
// A bridge that goes over to another configuration.

#include "bridge_fixture.h"

#include "bridge/topics/topic_commands.h"
#include "support/event_loop.h"

namespace buttondriver::bridge {
namespace {

using buttondriver::test::process_events_until;

class BridgeChangeTest : public BridgeFixture {};

TEST_F(BridgeChangeTest, a_panel_that_joins_a_group_changes_no_order_of_its_other_panels) {
  configuration.groups = {{"doors", {"hall"}}};
  startBridge();
  keep("group/doors/led/all", "off");
  keep("hall/led/5", "on");
  expectWanted("hall", {"group/doors/led/all", "hall/led/5"});
  configuration.groups = {{"doors", {"hall", "yard"}}};
  changeAndSync();
  EXPECT_EQ((QVector<QByteArray>{"group/doors/led/all"}), wanted("yard"));
  EXPECT_EQ((QVector<QByteArray>{"group/doors/led/all", "hall/led/5"}), wanted("hall"));
  buttondriver::test::process_ready_events();
  EXPECT_EQ(1, hall.connections());
}

TEST_F(BridgeChangeTest, of_a_panel_that_went_nothing_stays_but_that_it_is_not_there) {
  configuration.statistics_seconds = 1;
  configuration.discovery_prefix = "d";
  startBridge();
  expectCount("p/yard/statistics/waiting_bytes", 1);
  ASSERT_TRUE(process_events_until([this] { return topicsBelow("d/") == 2 * 84; }));
  configuration.panels.remove("yard");
  ASSERT_TRUE(bridge->change(configuration));
  ASSERT_TRUE(process_events_until([this] { return topicsBelow("p/yard/statistics/") == 0; }));
  ASSERT_TRUE(process_events_until([this] { return topicsBelow("d/") == 84; }));
  expectLast("p/yard/availability", "offline");
}

TEST_F(BridgeChangeTest, another_broker_is_another_memory_and_the_first_one_is_told) {
  const buttondriver::test::MosquittoBroker other;
  startBridge();
  keep("hall/led/5", "on");
  expectWanted("hall", {"hall/led/5"});
  expectLast("p/hall/availability", "online");
  configuration.broker.port = other.port();
  changeAndSync();
  expectLast("p/hall/availability", "offline");
  expectLast("p/bridge/1/availability", "offline");
  EXPECT_EQ((QVector<QByteArray>{"hall/led/5"}), wanted("hall"));
}

TEST_F(BridgeChangeTest, settings_that_cannot_be_right_change_nothing) {
  startBridge();
  expectLast("p/yard/availability", "online");
  Configuration wrong = configuration;
  wrong.broker.has_tls = true;
  wrong.broker.ca_file = QStringLiteral("/nowhere/ca.pem");
  wrong.panels.remove("yard");
  EXPECT_FALSE(bridge->change(wrong));
  keep("yard/led/5", "on");
  expectWanted("yard", {"yard/led/5"});
  EXPECT_EQ(1, syncs);
}

TEST_F(BridgeChangeTest, names_stay_and_all_else_is_taken_over) {
  startBridge();
  configuration.prefix = "q";
  configuration.panels.remove("yard");
  const auto outcome = bridge->change(configuration);
  ASSERT_FALSE(outcome);
  EXPECT_EQ(nullptr, bridge->fleet().find("yard"));
  keep("hall/led/5", "on");
  expectWanted("hall", {"hall/led/5"});
}

TEST_F(BridgeChangeTest, a_panel_that_moves_keeps_its_numbers_and_gets_its_state_at_the_other_place) {
  configuration.panels.remove("yard");
  startBridge();
  keep("hall/led/5", "on");
  const QByteArray message = command_of("led/5", "on")->frame.mid(4);
  const auto has = [&](const test::PanelStandIn &place) {
    return !place.messages().empty() && place.messages().back() == message;
  };
  ASSERT_TRUE(process_events_until([&] { return has(hall); }));
  const quint64 sent = bridge->fleet().find("hall")->numbers().sent;
  configuration.panels["hall"].port = yard.port();
  ASSERT_TRUE(bridge->change(configuration));
  ASSERT_TRUE(process_events_until([&] { return has(yard); }));
  EXPECT_EQ(test::messages_for_whole_panel, yard.messages().size()); // its lamp is not cleared but set
  EXPECT_EQ(sent + yard.messages().size(), bridge->fleet().find("hall")->numbers().sent);
  EXPECT_EQ(1U, bridge->fleet().find("hall")->numbers().reconnects);
}

TEST_F(BridgeChangeTest, what_a_panel_that_moves_had_not_taken_is_told) {
  startBridge();
  expectLast("p/hall/availability", "online");
  hall.reads = false;
  const QByteArray part = R"({"line":0,"offset":0,"text":")" + QByteArray(120, 'x') + R"("})";
  const auto waits = [this] { return bridge->fleet().find("hall")->numbers().waiting_commands > 0; };
  for (int i = 0; i < 20'000 && !waits(); ++i) {
    publish("hall/do/screen/0/part", part);
    buttondriver::test::process_ready_events();
  }
  ASSERT_TRUE(process_events_until(waits));
  configuration.panels["hall"].port = yard.port();
  ASSERT_TRUE(bridge->change(configuration));
  expectCount("p/hall/error", 1);
}

} // namespace
} // namespace buttondriver::bridge
