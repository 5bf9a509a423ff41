// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/broker/broker_connection.h"
#include "support/event_loop.h"
#include "support/mosquitto/mosquitto_broker.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace buttondriver::bridge {

/// A message that came, as a test compares it.
struct Arrival {
  std::string topic;
  std::string payload;
  bool is_retained = false;
  bool is_old = false;

  bool operator==(const Arrival &other) const {
    return topic == other.topic && payload == other.payload && is_retained == other.is_retained &&
           is_old == other.is_old;
  }
};

inline std::ostream &operator<<(std::ostream &stream, const Arrival &arrival) {
  return stream << arrival.topic << " = " << arrival.payload.substr(0, 40) << (arrival.is_retained ? ", retained" : "")
                << (arrival.is_old ? ", old" : "");
}

/// Pauses that a test can wait for; and no way out for a marker that does not come back.
inline BrokerConnection::Times short_times() {
  BrokerConnection::Times times;
  times.quiet_ms = 600'000;
  times.first_pause_ms = 10;
  times.longest_pause_ms = 100;
  return times;
}

/// A connection, and what it has told.
struct WatchedConnection {
  explicit WatchedConnection(BrokerConnection::Times times = short_times()) : connection(times, nullptr) {
    QObject::connect(&connection, &BrokerConnection::connected, [this] {
      ++connects;
      if (!filters.isEmpty())
        connection.subscribe(filters);
      if (!marker_topic.isEmpty())
        connection.askForEnd(marker_topic);
    });
    QObject::connect(&connection, &BrokerConnection::disconnected,
                     [this](const QString &reason) { reasons += reason; });
    QObject::connect(&connection, &BrokerConnection::messageCame,
                     [this](const QByteArray &topic, const QByteArray &payload, bool is_retained, bool is_old) {
                       messages.push_back({topic.toStdString(), payload.toStdString(), is_retained, is_old});
                     });
    QObject::connect(&connection, &BrokerConnection::everyRetainedHasCome, [this] {
      ++ends;
      messages_at_end = messages.size();
    });
  }

  /// Starts, and waits until it is connected.
  void start(const BrokerSettings &settings) {
    ASSERT_TRUE(connection.start(settings));
    ASSERT_TRUE(buttondriver::test::process_events_until([this] { return connects > 0; }))
        << reasons.join("\n").toStdString();
  }
  /// Starts, and waits until all that is kept has come.
  void startAndCollect(const BrokerSettings &settings) {
    start(settings);
    ASSERT_TRUE(buttondriver::test::process_events_until([this] { return ends > 0; }));
  }
  bool waitForMessages(std::size_t count) {
    return buttondriver::test::process_events_until([&] { return messages.size() >= count; });
  }
  bool waitUntilSent() {
    return buttondriver::test::process_events_until([&] { return connection.waitingMessages() == 0; });
  }
  std::string lastReason() const { return reasons.isEmpty() ? std::string() : reasons.last().toStdString(); }

  BrokerConnection connection;
  QVector<QByteArray> filters; ///< subscribed whenever it is connected
  QByteArray marker_topic;     ///< asked for whenever it is connected
  int connects = 0;
  QStringList reasons;
  std::vector<Arrival> messages;
  int ends = 0;
  std::size_t messages_at_end = 0;
};

/// How to reach `broker`.
inline BrokerSettings settings_for(const buttondriver::test::MosquittoBroker &broker, const QByteArray &client_id,
                                   bool is_mqtt_5 = true) {
  BrokerSettings settings;
  settings.port = broker.port();
  settings.client_id = client_id;
  settings.is_mqtt_5 = is_mqtt_5;
  return settings;
}

} // namespace buttondriver::bridge
