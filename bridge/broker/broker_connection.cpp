// SPDX-License-Identifier: Apache-2.0
#include "bridge/broker/broker_connection.h"

#include "bridge/broker/mosquitto_session.h"
#include "bridge/broker/refusals.h"
#include "bridge/broker/subscriptions.h"

#include <QFile>
#include <QHostAddress>
#include <QHostInfo>

namespace buttondriver::bridge {

namespace {

Outcome<Done> readable(const QString &name) {
  QFile file(name);
  if (name.isEmpty() || file.open(QIODevice::ReadOnly))
    return Done();
  return Failure{name + QStringLiteral(": ") + file.errorString()};
}

} // namespace

Outcome<Done> BrokerConnection::check(const BrokerSettings &settings) {
  if (settings.host.isEmpty() || settings.port == 0)
    return Failure{QStringLiteral("the broker has no host or no port")};
  constexpr int least_keep_alive_seconds = 5; // the library's
  constexpr int most_keep_alive_seconds = 65535;
  if (settings.keep_alive_seconds < least_keep_alive_seconds || settings.keep_alive_seconds > most_keep_alive_seconds)
    return Failure{QStringLiteral("the time of keep-alive has to be 5 to 65535 seconds")};
  if (settings.cert_file.isEmpty() != settings.key_file.isEmpty())
    return Failure{QStringLiteral("a certificate needs its key, and a key its certificate")};
  if (!settings.has_tls)
    return Done();
  for (const QString &file : {settings.ca_file, settings.cert_file, settings.key_file})
    if (auto outcome = readable(file); !outcome)
      return outcome;
  return Done();
}

BrokerConnection::BrokerConnection(QObject *parent) : BrokerConnection(Times(), parent) {}

BrokerConnection::BrokerConnection(Times times, QObject *parent)
    : QObject(parent), _times(times), _growing_pause(times.first_pause_ms, times.longest_pause_ms) {
  _pause.setSingleShot(true);
  connect(&_pause, &QTimer::timeout, this, &BrokerConnection::lookUp);
  _proof.setSingleShot(true);
  // Two clients of one name end each other's connections, each after a pause.
  _proof.setInterval(2 * times.longest_pause_ms);
  connect(&_proof, &QTimer::timeout, this, [this] { _growing_pause.reset(); });
}

BrokerConnection::~BrokerConnection() = default;

Outcome<Done> BrokerConnection::start(const BrokerSettings &settings) {
  stop(0);
  if (auto outcome = check(settings); !outcome)
    return outcome;
  _settings = settings;
  _growing_pause.reset();
  _pause.start(0);
  return Done();
}

void BrokerConnection::stop(int most_ms) {
  _pause.stop();
  if (_lookup >= 0)
    QHostInfo::abortHostLookup(_lookup);
  _lookup = -1;
  if (_session)
    _session->close(most_ms);
  dropSession();
}

void BrokerConnection::lookUp() {
  if (!QHostAddress(_settings.host).isNull())
    return open(_settings.host);
  // The library would wait for the answer.
  _lookup = QHostInfo::lookupHost(_settings.host, this, [this](const QHostInfo &answer) {
    // What Qt still knew of a name comes even if the lookup is aborted.
    if (answer.lookupId() != _lookup)
      return;
    _lookup = -1;
    const QList<QHostAddress> addresses = answer.addresses();
    if (addresses.isEmpty())
      return ended(answer.errorString());
    // With TLS the library has to know the name, to compare it with the certificate's. It looks it up again, which is
    // quick by now.
    open(_settings.has_tls ? _settings.host : addresses[_attempts % addresses.size()].toString());
  });
}

void BrokerConnection::open(const QString &host) {
  ++_attempts;
  _session = std::make_unique<MosquittoSession>(_settings);
  _subscriptions = std::make_unique<Subscriptions>(*_session, _times.quiet_ms);
  _refusals = std::make_unique<Refusals>();
  connect(_session.get(), &MosquittoSession::refused, this,
          [this](const QByteArray &topic, int code) { _refusals->take(topic, code); });
  connect(_subscriptions.get(), &Subscriptions::ended, this, &BrokerConnection::everyRetainedHasCome);
  connect(_session.get(), &MosquittoSession::opened, this, &BrokerConnection::opened);
  connect(_session.get(), &MosquittoSession::closed, this, &BrokerConnection::ended);
  connect(_session.get(), &MosquittoSession::messageCame, this, &BrokerConnection::receive);
  connect(_session.get(), &MosquittoSession::tooLargeCame, this, &BrokerConnection::tooLargeCame);
  _session->open(host, _times.most_connecting_ms);
}

void BrokerConnection::opened() {
  if (_has_been_connected)
    ++_reconnects;
  _has_been_connected = true;
  _proof.start();
  Q_EMIT connected();
}

void BrokerConnection::receive(const QByteArray &topic, const QByteArray &payload, bool is_retained) {
  if (_subscriptions->takeMarker(topic, payload))
    return;
  // With MQTT 5 a new message that is to be kept has the same flag as one that was kept. Before that, only the latter
  // has it.
  const bool is_old = is_retained && (!_settings.is_mqtt_5 || _subscriptions->isCollecting());
  Q_EMIT messageCame(topic, payload, is_retained, is_old);
}

void BrokerConnection::ended(const QString &reason) {
  dropSession();
  _pause.start(_growing_pause.next());
  Q_EMIT disconnected(reason);
}

void BrokerConnection::dropSession() {
  _proof.stop();
  if (!_session)
    return;
  // They may be what this is called from.
  _too_large += _session->tooLarge();
  _session->disconnect(this);
  _subscriptions->disconnect(this);
  _subscriptions.release()->deleteLater();
  _session.release()->deleteLater();
}

bool BrokerConnection::isConnected() const { return _session && _session->isOpen(); }

bool BrokerConnection::publish(const QByteArray &topic, const QByteArray &payload, bool is_retained,
                               int quality_of_service) {
  if (!isConnected())
    return false;
  if (_session->publish(topic, payload, is_retained, quality_of_service))
    return true;
  ++_dropped;
  return false;
}

void BrokerConnection::subscribe(const QVector<QByteArray> &filters) {
  if (isConnected())
    _subscriptions->add(filters);
}

void BrokerConnection::unsubscribe(const QVector<QByteArray> &filters) {
  if (isConnected())
    _session->unsubscribe(filters);
}

void BrokerConnection::askForEnd(const QByteArray &topic) {
  if (isConnected())
    _subscriptions->askForEnd(topic);
}

quint64 BrokerConnection::reconnects() const { return _reconnects; }

quint64 BrokerConnection::dropped() const { return _dropped; }

quint64 BrokerConnection::tooLarge() const { return _too_large + (_session ? _session->tooLarge() : 0); }

int BrokerConnection::waitingMessages() const { return _session ? _session->waiting().count() : 0; }

} // namespace buttondriver::bridge
