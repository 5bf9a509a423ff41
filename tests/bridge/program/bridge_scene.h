// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/broker/broker_connection.h"
#include "support/mosquitto/mosquitto_broker.h"
#include "support/program.h"
#include "support/temporary_folder.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace buttondriver::bridge {

/// A broker, and a client of it that publishes and remembers what comes. Bridges are started by the test.
class BridgeScene : public testing::Test {
protected:
  explicit BridgeScene(test::MosquittoBroker::Options options = {});
  ~BridgeScene() override;

  /// Writes a configuration: the broker, and `lines` after it. The file's name.
  std::string configure(const std::string &name, const QByteArray &lines);
  /// The program with that file.
  std::unique_ptr<test::Program> startBridge(const std::string &file);

  /// Publishes with quality of service 1.
  void keep(const QByteArray &tail, const QByteArray &payload) { publish(tail, payload, true); }
  void publish(const QByteArray &tail, const QByteArray &payload, bool is_retained);

  /// The last payload that came on a topic below the prefix; null when none has.
  QByteArray last(const QByteArray &tail) const { return _last.value(tail); }
  int count(const QByteArray &tail) const { return _counts.value(tail); }
  /// Waits for it.
  void expectLast(const QByteArray &tail, const QByteArray &payload);
  /// Waits until something has come on that topic.
  void expectAny(const QByteArray &tail);
  void forget();
  /// Waits until the test's client is connected (again).
  void waitForClient();
  /// What a client that comes now is told to be retained on that topic; null when nothing is.
  QByteArray retained(const QByteArray &tail);

  test::MosquittoBroker broker;
  test::TemporaryFolder folder;

private:
  BrokerSettings settings(const QByteArray &client_id) const;

  BrokerConnection _client;
  QHash<QByteArray, QByteArray> _last;
  QHash<QByteArray, int> _counts;
};

} // namespace buttondriver::bridge
