// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/broker/broker_settings.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

#include <memory>

namespace buttondriver::bridge {

class MosquittoSession;
class Subscriptions;

/// The connection to a broker, kept in the event loop: after a break it is tried again, after pauses that grow from
/// half a second to 30 s. One thread, that of the event loop. No call waits, but for looking up the broker's name.
class BrokerConnection : public QObject {
  Q_OBJECT

public:
  struct Times {
    int first_pause_ms = 500;
    int longest_pause_ms = 30000;
    int most_connecting_ms = 20000; ///< from the attempt to the broker's answer
    int quiet_ms = 5000;            ///< without a message: what askForEnd() waits for has been lost
  };

  explicit BrokerConnection(QObject *parent = nullptr);
  BrokerConnection(Times times, QObject *parent);
  ~BrokerConnection() override;

  /// Starts to connect. Fails for settings that cannot be right, such as a CA file that cannot be read.
  Outcome<Done> start(const BrokerSettings &settings);
  /// Ends the connection as a client does that goes on purpose: no last will. Waits until what was published is sent,
  /// `most_ms` at most.
  void stop(int most_ms);

  bool isConnected() const;

  /// `is_retained` asks the broker to keep it. While there is no connection nothing is published, and false returned.
  bool publish(const QByteArray &topic, const QByteArray &payload, bool is_retained, int quality_of_service);
  /// Topic filters, with quality of service 1. What this client publishes itself does not come back (MQTT 5).
  void subscribe(const QVector<QByteArray> &filters);
  void unsubscribe(const QVector<QByteArray> &filters);
  /// Calls everyRetainedHasCome() when all that the broker keeps for the filters so far has been delivered. `topic`:
  /// one that this client subscribes and publishes for that, and nobody else uses.
  void askForEnd(const QByteArray &topic);

  quint64 reconnects() const;
  /// Bytes or messages that wait to be sent to the broker.
  int waitingMessages() const;

Q_SIGNALS:
  /// Subscriptions have to be made now, each time.
  void connected();
  void disconnected(const QString &reason);
  /// `is_retained`: the broker has kept it, or (MQTT 5) will keep it.
  /// `is_old`: it was kept from before the subscription.
  void messageCame(const QByteArray &topic, const QByteArray &payload, bool is_retained, bool is_old);
  void everyRetainedHasCome();

private:
  void lookUp();
  void open(const QString &host);
  void opened();
  void receive(const QByteArray &topic, const QByteArray &payload, bool is_retained);
  void ended(const QString &reason);
  void dropSession();

  Times _times;
  BrokerSettings _settings;
  std::unique_ptr<MosquittoSession> _session;
  std::unique_ptr<Subscriptions> _subscriptions;
  QTimer _pause; ///< until the next attempt
  int _next_pause_ms = 0;
  int _lookup = -1;
  int _attempts = 0;
  bool _is_started = false;
  bool _has_been_connected = false;
  quint64 _reconnects = 0;
  quint64 _dropped = 0;
};

} // namespace buttondriver::bridge
