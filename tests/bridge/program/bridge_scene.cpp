// SPDX-License-Identifier: Apache-2.0
#include "bridge_scene.h"

#include "support/event_loop.h"

#include <utility>

namespace buttondriver::bridge {

namespace {

const QByteArray prefix = "buttondriver/";

BrokerConnection::Times short_times() {
  BrokerConnection::Times times;
  times.first_pause_ms = 10;
  times.longest_pause_ms = 50;
  return times;
}

} // namespace

BridgeScene::BridgeScene(test::MosquittoBroker::Options options)
    : broker(std::move(options)), _client(short_times(), nullptr) {
  QObject::connect(&_client, &BrokerConnection::connected, [this] { _client.subscribe({prefix + '#'}); });
  QObject::connect(&_client, &BrokerConnection::messageCame,
                   [this](const QByteArray &topic, const QByteArray &payload, bool, bool) {
                     _last.insert(topic.mid(prefix.size()), payload);
                     ++_counts[topic.mid(prefix.size())];
                   });
  EXPECT_TRUE(_client.start(settings("test")));
  waitForClient();
}

BridgeScene::~BridgeScene() = default;

BrokerSettings BridgeScene::settings(const QByteArray &client_id) const {
  BrokerSettings settings;
  settings.port = broker.port();
  settings.client_id = client_id;
  return settings;
}

std::string BridgeScene::configure(const std::string &name, const QByteArray &lines) {
  return folder.write(name, "[broker]\nport = " + std::to_string(broker.port()) + "\n" + lines.toStdString());
}

std::unique_ptr<test::Program> BridgeScene::startBridge(const std::string &file) {
  return std::make_unique<test::Program>(QStringLiteral(BUTTONDRIVER_MQTT_PROGRAM),
                                         QStringList{QStringLiteral("--config"), QString::fromStdString(file)});
}

void BridgeScene::publish(const QByteArray &tail, const QByteArray &payload, bool is_retained) {
  EXPECT_TRUE(_client.publish(prefix + tail, payload, is_retained, 1));
}

void BridgeScene::expectLast(const QByteArray &tail, const QByteArray &payload) {
  EXPECT_TRUE(test::process_events_until([&] { return last(tail) == payload; }))
      << tail.toStdString() << ": " << last(tail).toStdString();
}

void BridgeScene::expectAny(const QByteArray &tail) {
  EXPECT_TRUE(test::process_events_until([&] { return count(tail) > 0; })) << tail.toStdString();
}

void BridgeScene::forget() {
  _last.clear();
  _counts.clear();
}

void BridgeScene::waitForClient() {
  ASSERT_TRUE(test::process_events_until([this] { return _client.isConnected(); }));
}

QByteArray BridgeScene::retained(const QByteArray &tail) {
  BrokerConnection client(short_times(), nullptr);
  QByteArray found;
  bool has_ended = false;
  QObject::connect(&client, &BrokerConnection::connected, [&] {
    client.subscribe({prefix + tail});
    client.askForEnd("looking");
  });
  QObject::connect(&client, &BrokerConnection::messageCame,
                   [&](const QByteArray &, const QByteArray &payload, bool, bool) { found = payload; });
  QObject::connect(&client, &BrokerConnection::everyRetainedHasCome, [&] { has_ended = true; });
  EXPECT_TRUE(client.start(settings("looking")));
  EXPECT_TRUE(test::process_events_until([&] { return has_ended; }));
  return found;
}

} // namespace buttondriver::bridge
