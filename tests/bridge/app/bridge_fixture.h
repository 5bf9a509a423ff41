// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/app/bridge.h"
#include "bridge/broker/broker_connection.h"
#include "bridge/panels/panel_stand_in.h"
#include "support/mosquitto/mosquitto_broker.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <gtest/gtest.h>

#include <memory>

namespace buttondriver::bridge {

/// A bridge in the test's own event loop, between a real broker and stand-ins for two panels, "hall" and "yard". A
/// client of the broker publishes, and remembers all that comes.
class BridgeFixture : public testing::Test {
protected:
  static buttondriver::test::MosquittoBroker::Options options();
  BridgeFixture();
  explicit BridgeFixture(buttondriver::test::MosquittoBroker::Options options);

  /// Starts one with `configuration`, and waits until it has compared.
  void startBridge();
  /// Takes over `configuration`, and waits until the panels that it concerns are compared.
  void changeAndSync();
  void waitForClient();
  /// As a crash of the broker, until the client knows.
  void endBroker();

  void keep(const QByteArray &tail, const QByteArray &payload) { publish(tail, payload, true); }
  void publish(const QByteArray &tail, const QByteArray &payload, bool is_retained = false);
  /// Waits until a panel wants just these topics, in this order.
  void expectWanted(const QByteArray &panel, const QVector<QByteArray> &topics);
  QVector<QByteArray> wanted(const QByteArray &panel) const;
  void expectLast(const QByteArray &topic, const QByteArray &payload);
  /// Waits until so many messages have come on that topic.
  void expectCount(const QByteArray &topic, int count);
  QByteArray last(const QByteArray &topic) const { return _last.value(topic); }
  int count(const QByteArray &topic) const { return _counts.value(topic); }
  void forget();
  /// How many topics below `beginning` have a last payload.
  int topicsBelow(const QByteArray &beginning) const;

  buttondriver::test::MosquittoBroker broker;
  test::PanelStandIn hall;
  test::PanelStandIn yard;
  Configuration configuration;
  Bridge::Times times;
  std::unique_ptr<Bridge> bridge;
  int syncs = 0;

private:
  QHash<QByteArray, QByteArray> _last; // by topic, as it came
  QHash<QByteArray, int> _counts;
  BrokerConnection _client;
};

} // namespace buttondriver::bridge
