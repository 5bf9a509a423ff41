// SPDX-License-Identifier: Apache-2.0
#include "bridge_fixture.h"

#include "support/event_loop.h"

#include <algorithm>
#include <utility>

namespace buttondriver::bridge {

using buttondriver::test::process_events_until;

namespace {

BrokerConnection::Times short_times() {
  BrokerConnection::Times times;
  times.first_pause_ms = 10;
  times.longest_pause_ms = 50;
  return times;
}

} // namespace

/// It keeps all for a client, however much it is.
buttondriver::test::MosquittoBroker::Options BridgeFixture::options() {
  buttondriver::test::MosquittoBroker::Options options;
  options.more_lines = "max_queued_messages 0\n";
  return options;
}

BridgeFixture::BridgeFixture() : BridgeFixture(options()) {}

BridgeFixture::BridgeFixture(buttondriver::test::MosquittoBroker::Options options)
    : broker(std::move(options)), _client(short_times(), nullptr) {
  times.broker = short_times();
  times.panel.first_pause_ms = 10;
  times.panel.longest_pause_ms = 50;
  times.order_pause_ms = 1;
  configuration.broker.port = broker.port();
  configuration.prefix = "p";
  configuration.statistics_seconds = 0;
  configuration.panels = {{"hall", PanelAddress{QStringLiteral("127.0.0.1"), hall.port()}},
                          {"yard", PanelAddress{QStringLiteral("127.0.0.1"), yard.port()}}};
  QObject::connect(&_client, &BrokerConnection::connected, [this] { _client.subscribe({"#"}); });
  QObject::connect(&_client, &BrokerConnection::messageCame,
                   [this](const QByteArray &topic, const QByteArray &payload, bool, bool) {
                     _last.insert(topic, payload);
                     ++_counts[topic];
                   });
  BrokerSettings settings;
  settings.port = broker.port();
  settings.client_id = "test";
  settings.is_mqtt_5 = false; // so that what it publishes comes back
  EXPECT_TRUE(_client.start(settings));
  waitForClient();
}

void BridgeFixture::waitForClient() {
  ASSERT_TRUE(process_events_until([this] { return _client.isConnected(); }));
}

void BridgeFixture::endBroker() {
  broker.end(SIGKILL);
  ASSERT_TRUE(process_events_until([this] { return !_client.isConnected(); }));
}

void BridgeFixture::startBridge() {
  bridge = std::make_unique<Bridge>(times);
  syncs = 0;
  QObject::connect(bridge.get(), &Bridge::synced, [this] { ++syncs; });
  ASSERT_TRUE(bridge->start(configuration));
  ASSERT_TRUE(process_events_until([this] { return syncs > 0; }));
}

void BridgeFixture::changeAndSync() {
  const int before = syncs;
  ASSERT_TRUE(bridge->change(configuration));
  ASSERT_TRUE(process_events_until([&] { return syncs > before; }));
}

void BridgeFixture::publish(const QByteArray &tail, const QByteArray &payload, bool is_retained) {
  EXPECT_TRUE(_client.publish("p/" + tail, payload, is_retained, 1));
}

QVector<QByteArray> BridgeFixture::wanted(const QByteArray &panel) const {
  QVector<QByteArray> topics;
  if (const Panel *const found = bridge->fleet().find(panel))
    for (const WantedState::Entry &entry : found->wanted().entries())
      topics.append(entry.topic);
  return topics;
}

void BridgeFixture::expectWanted(const QByteArray &panel, const QVector<QByteArray> &topics) {
  EXPECT_TRUE(process_events_until([&] { return wanted(panel) == topics; }))
      << wanted(panel).toList().join(' ').toStdString();
}

void BridgeFixture::expectLast(const QByteArray &topic, const QByteArray &payload) {
  EXPECT_TRUE(process_events_until([&] { return last(topic) == payload && _last.contains(topic); }))
      << topic.toStdString() << ": " << last(topic).toStdString();
}

void BridgeFixture::expectCount(const QByteArray &topic, int count) {
  EXPECT_TRUE(process_events_until([&] { return this->count(topic) >= count; }))
      << topic.toStdString() << ": " << this->count(topic);
}

void BridgeFixture::forget() {
  _last.clear();
  _counts.clear();
}

int BridgeFixture::topicsBelow(const QByteArray &beginning) const {
  int count = 0;
  for (auto one = _last.cbegin(); one != _last.cend(); ++one)
    count += one.key().startsWith(beginning) && !one->isEmpty() ? 1 : 0;
  return count;
}

} // namespace buttondriver::bridge
