// SPDX-License-Identifier: Apache-2.0
// What a bridge begins and ends when another configuration says so: pages, numbers, discovery, a broker.

#include "bridge_fixture.h"

#include "bridge/broker/watched_connection.h"
#include "support/event_loop.h"

#include <QTcpSocket>

#include <gmock/gmock.h>

namespace buttondriver::bridge {
namespace {

using buttondriver::test::MosquittoBroker;
using buttondriver::test::process_events_until;
using buttondriver::test::process_ready_events;

class BridgeReloadTest : public BridgeFixture {
protected:
  BridgeReloadTest() : BridgeReloadTest(BridgeFixture::options()) {}
  explicit BridgeReloadTest(MosquittoBroker::Options options) : BridgeFixture(std::move(options)) {}

  /// Waits until all that the bridge has published so far is there.
  void expectAllPublished() {
    keep("hall/led/all", "off");
    keep("hall/led/5", "on");
    ASSERT_TRUE(process_events_until([this] { return last("p/hall/order").contains("hall/led/all"); }));
  }
};

/// A port that the system has given, and that nobody else gets as long as this lives.
struct HeldPort {
  HeldPort() { EXPECT_TRUE(socket.bind(QHostAddress(QHostAddress::LocalHost), 0, QAbstractSocket::ReuseAddressHint)); }
  quint16 number() const { return socket.localPort(); }
  /// The page of numbers there; empty if nobody is.
  QByteArray page() const {
    QTcpSocket caller;
    caller.connectToHost(QHostAddress(QHostAddress::LocalHost), number());
    caller.write("GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_TRUE(process_events_until([&] { return caller.state() == QAbstractSocket::UnconnectedState; }));
    return caller.readAll();
  }

  QTcpSocket socket;
};

TEST_F(BridgeReloadTest, the_page_of_numbers_is_where_the_configuration_says) {
  const HeldPort first;
  const HeldPort second;
  configuration.metrics_port = first.number();
  startBridge();
  struct Row {
    quint16 port;
    bool is_at_first;
    bool is_at_second;
  };
  for (const Row &row : {Row{first.number(), true, false}, Row{second.number(), false, true}, Row{0, false, false},
                         Row{first.number(), true, false}}) {
    SCOPED_TRACE(row.port);
    configuration.metrics_port = row.port;
    ASSERT_TRUE(bridge->change(configuration));
    EXPECT_EQ(row.port, bridge->metricsPort());
    EXPECT_EQ(row.is_at_first, first.page().contains("panel=\"hall\""));
    EXPECT_EQ(row.is_at_second, second.page().contains("panel=\"yard\""));
  }
}

TEST_F(BridgeReloadTest, numbers_are_published_from_the_change_that_asks_for_them_to_the_one_that_does_not) {
  startBridge();
  configuration.statistics_seconds = 1;
  ASSERT_TRUE(bridge->change(configuration));
  expectCount("p/hall/statistics/refused", 1);
  configuration.statistics_seconds = 0;
  ASSERT_TRUE(bridge->change(configuration));
  QTimer as_long;
  as_long.setSingleShot(true);
  as_long.start(1000); // the bridge's would have come before it
  forget();
  keep("hall/led/7", "on");
  ASSERT_TRUE(process_events_until([&] { return !as_long.isActive(); }));
  expectAllPublished();
  EXPECT_EQ(0, topicsBelow("p/bridge/1/statistics/"));
}

TEST_F(BridgeReloadTest, discovery_is_where_the_configuration_says) {
  configuration.discovery_prefix = "d";
  startBridge();
  for (const auto &[prefix, in_d, in_e] : {std::tuple("d", 168, 0), std::tuple("e", 0, 168), std::tuple("", 0, 0)}) {
    SCOPED_TRACE(prefix);
    configuration.discovery_prefix = prefix;
    ASSERT_TRUE(bridge->change(configuration));
    EXPECT_TRUE(process_events_until([&, in_d = in_d, in_e = in_e] {
      return topicsBelow("d/") == in_d && topicsBelow("e/") == in_e;
    })) << topicsBelow("d/")
        << ' ' << topicsBelow("e/");
  }
  expectAllPublished();
  EXPECT_EQ(0, topicsBelow("/"));
}

/// What comes to a client of another broker, until the bridge tells that it is there.
class OtherBroker {
public:
  explicit OtherBroker(const std::vector<std::pair<QByteArray, QByteArray>> &kept = {}) {
    _client.filters = {"#"};
    _client.start(settings_for(broker, "other"));
    for (const auto &[topic, payload] : kept)
      EXPECT_TRUE(_client.connection.publish(topic, payload, true, 1));
    EXPECT_TRUE(_client.waitUntilSent());
  }
  std::vector<std::string> topicsWith(const std::string &name) const {
    EXPECT_TRUE(process_events_until([this] { return !all("p/bridge/1/availability").empty(); }));
    return all(name);
  }

  const MosquittoBroker broker;

private:
  std::vector<std::string> all(const std::string &name) const {
    std::vector<std::string> topics;
    for (const Arrival &arrival : _client.messages)
      if (arrival.topic.find(name) != std::string::npos)
        topics.push_back(arrival.topic);
    return topics;
  }

  WatchedConnection _client;
};

TEST_F(BridgeReloadTest, discovery_is_published_at_another_broker_that_knows_the_panels) {
  configuration.discovery_prefix = "found";
  startBridge();
  ASSERT_TRUE(process_events_until([this] { return topicsBelow("found/") == 168; }));
  const OtherBroker other({{"p/hall/order", "[]"}, {"p/yard/order", "[]"}});
  configuration.broker.port = other.broker.port();
  changeAndSync();
  EXPECT_TRUE(process_events_until([&] { return other.topicsWith("found/").size() == 168; }));
}

TEST_F(BridgeReloadTest, another_broker_is_told_nothing_of_a_panel_that_went_before) {
  configuration.discovery_prefix = "d";
  startBridge();
  ASSERT_TRUE(process_events_until([this] { return topicsBelow("d/") == 168; }));
  endBroker();
  ASSERT_TRUE(process_events_until([this] { return !bridge->numbers().is_connected; }));
  configuration.panels.remove("yard");
  ASSERT_TRUE(bridge->change(configuration));
  const OtherBroker other;
  configuration.broker.port = other.broker.port();
  changeAndSync();
  EXPECT_THAT(other.topicsWith("yard"), testing::IsEmpty());
}

class ReturningPanelTest : public BridgeReloadTest {
protected:
  ReturningPanelTest() : BridgeReloadTest(options()) {}

  static MosquittoBroker::Options options() {
    auto options = BridgeFixture::options();
    options.has_persistence = true;
    return options;
  }
};

TEST_F(ReturningPanelTest, that_went_and_came_while_the_broker_was_away_is_there) {
  startBridge();
  expectLast("p/yard/availability", "online");
  broker.end();
  ASSERT_TRUE(process_events_until([this] { return !bridge->numbers().is_connected; }));
  Configuration without = configuration;
  without.panels.remove("yard");
  ASSERT_TRUE(bridge->change(without));
  const int before = syncs;
  ASSERT_TRUE(bridge->change(configuration));
  ASSERT_TRUE(process_events_until([this] { return bridge->fleet().find("yard")->numbers().is_up; }));
  process_ready_events();
  forget();
  ASSERT_TRUE(broker.start());
  waitForClient();
  ASSERT_TRUE(process_events_until([&] { return syncs > before; }));
  expectAllPublished();
  EXPECT_EQ("online", last("p/yard/availability"));
}

class WatchedSubscriptionsTest : public BridgeReloadTest {
protected:
  WatchedSubscriptionsTest() : BridgeReloadTest(options()) {}

  static MosquittoBroker::Options options() {
    auto options = BridgeFixture::options();
    options.more_lines += "log_type unsubscribe\n";
    return options;
  }
};

TEST_F(WatchedSubscriptionsTest, what_is_not_driven_any_more_is_not_subscribed) {
  configuration.groups = {{"doors", {"yard"}}};
  startBridge();
  configuration.panels.remove("yard");
  configuration.groups.clear();
  ASSERT_TRUE(bridge->change(configuration));
  for (const char *filter : {"p/yard/#", "p/group/doors/#"})
    EXPECT_TRUE(process_events_until([&] { return broker.log().contains(filter); })) << filter;
  EXPECT_FALSE(broker.log().contains("p/hall/#"));
}

TEST_F(BridgeReloadTest, a_change_in_the_middle_of_a_comparison_is_compared_too) {
  for (const char *topic : {"hall/led/5", "yard/led/6", "group/doors/led/7"})
    keep(topic, "on");
  expectLast("p/group/doors/led/7", "on");
  const auto panels = configuration.panels;
  configuration.panels.remove("yard");
  configuration.groups = {{"doors", {"hall"}}};
  bridge = std::make_unique<Bridge>(times);
  QObject::connect(bridge.get(), &Bridge::synced, [this] { ++syncs; });
  ASSERT_TRUE(bridge->start(configuration));
  ASSERT_TRUE(process_events_until([this] { return bridge->numbers().is_connected; }));
  configuration.panels = panels;
  configuration.groups = {{"doors", {"hall", "yard"}}};
  const int before = syncs;
  ASSERT_TRUE(bridge->change(configuration));
  ASSERT_TRUE(process_events_until([&] { return syncs > before; }));
  EXPECT_THAT(wanted("yard"), testing::UnorderedElementsAre("group/doors/led/7", "yard/led/6"));
  EXPECT_THAT(wanted("hall"), testing::UnorderedElementsAre("group/doors/led/7", "hall/led/5"));
  EXPECT_FALSE(bridge->fleet().find("hall")->isSyncing());
}

} // namespace
} // namespace buttondriver::bridge
