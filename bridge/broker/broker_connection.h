// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/broker/broker_settings.h"
#include "bridge/pauses/growing_pause.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

#include <memory>

namespace buttondriver::bridge {

class MosquittoSession;
class Refusals;
class Subscriptions;

/// The connection to a broker, kept in the event loop: after a break it is tried again, after pauses that grow from
/// half a second to 30 s, and begin again when a connection has lasted for a minute. One thread, that of the event
/// loop. No call waits, but for stop(), and with TLS for looking up a name that has just been found. All signals come
/// from the event loop; in them every call is allowed, and to delete this object too.
///
/// Nothing of a connection lives on in the next one: what was not yet sent is not sent later.
class BrokerConnection : public QObject {
  Q_OBJECT

public:
  struct Times {
    int first_pause_ms = 500;
    int longest_pause_ms = 30000;   ///< a connection that lasts twice as long makes the next pause the first one again
    int most_connecting_ms = 20000; ///< from the attempt to the broker's answer
    int quiet_ms = 5000;            ///< without a message: a marker has been lost (see Subscriptions)
  };

  explicit BrokerConnection(QObject *parent = nullptr);
  BrokerConnection(Times times, QObject *parent);
  /// Without stop() before, that is a break: the broker publishes the last will.
  ~BrokerConnection() override;

  /// Fails for settings that cannot be right, such as a CA file that cannot be read.
  static Outcome<Done> check(const BrokerSettings &settings);
  /// Starts to connect, and goes on until stop(). Fails as check() does.
  Outcome<Done> start(const BrokerSettings &settings);
  /// Ends the connection as a client does that goes on purpose: no last will, and no signal any more. Waits until the
  /// broker has what was published, `most_ms` at most.
  void stop(int most_ms);

  bool isConnected() const;

  /// `is_retained` asks the broker to keep it. False when nothing is published: while there is no connection, or when a
  /// broker that does not read has let too much wait. That is 1,000 messages or 1 MiB for quality of service 0, and
  /// 50,000 or 32 MiB for 1. What the broker refuses later is logged, once for each topic of a connection; it can say
  /// so with MQTT 5 and quality of service 1.
  bool publish(const QByteArray &topic, const QByteArray &payload, bool is_retained, int quality_of_service);
  /// Topic filters, with quality of service 1. What this client publishes itself does not come back (MQTT 5). One that
  /// the broker refuses is logged. Not too many topics should fit one filter: see Subscriptions.
  void subscribe(const QVector<QByteArray> &filters);
  void unsubscribe(const QVector<QByteArray> &filters);
  /// Calls everyRetainedHasCome() when all that the broker keeps for the filters so far has been delivered. `topic`:
  /// one that this client subscribes and publishes for that, and nobody else uses. messageCame() does not tell of it.
  /// When the broker does not take it or does not send it back, that is logged, and taken for the end: after a minute
  /// at most for the first one.
  void askForEnd(const QByteArray &topic);

  quint64 reconnects() const; ///< connections that came up after the first one
  /// Messages that wait for the broker: to be sent, or with quality of service 1 to be acknowledged.
  int waitingMessages() const;
  quint64 dropped() const;  ///< messages that a connected broker was not sent, because too much waited
  quint64 tooLarge() const; ///< messages of more than 8 MiB, which came and are not told

Q_SIGNALS:
  /// Subscriptions have to be made now, each time.
  void connected();
  /// Also when an attempt failed. `reason` is for people.
  void disconnected(const QString &reason);
  /// `is_retained`: the broker has kept it, or (MQTT 5) will keep it.
  /// `is_old`: it was kept from before the subscription. With MQTT 5 that cannot be told from a new one that is to be
  /// kept, as long as what was kept is still coming; then this is true for both.
  void messageCame(const QByteArray &topic, const QByteArray &payload, bool is_retained, bool is_old);
  /// A message of more than 8 MiB came, and goes no further.
  void tooLargeCame(const QByteArray &topic);
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
  std::unique_ptr<Refusals> _refusals;
  QTimer _pause; ///< until the next attempt
  QTimer _proof; ///< that a connection lasts
  GrowingPause _growing_pause;
  int _lookup = -1;
  int _attempts = 0;
  bool _has_been_connected = false;
  quint64 _reconnects = 0;
  quint64 _dropped = 0;
  quint64 _too_large = 0; ///< in former connections
};

} // namespace buttondriver::bridge
