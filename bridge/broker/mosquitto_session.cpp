// SPDX-License-Identifier: Apache-2.0
#include "bridge/broker/mosquitto_session.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QPointer>

#include <mosquitto.h>
#include <mqtt_protocol.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <utility>

namespace buttondriver::bridge {

namespace {

/// What is read before others in the event loop get their turn.
constexpr int most_packets_in_a_round = 64;

/// From this code of MQTT 5 on, something is refused or has failed.
constexpr int first_refusal = 0x80;

/// Once for the program, and never taken back: other objects may still use OpenSSL when it ends.
void prepare_library() {
  static const bool is_ready = [] {
    // The library writes to its socket without asking that there be no signal.
    struct sigaction now = {};
    if (::sigaction(SIGPIPE, nullptr, &now) == 0 && now.sa_handler == SIG_DFL)
      std::signal(SIGPIPE, SIG_IGN);
    return mosquitto_lib_init() == MOSQ_ERR_SUCCESS;
  }();
  Q_UNUSED(is_ready)
}

/// The library asks on the terminal otherwise, and waits.
int no_password(char *, int, int, void *) { return 0; }

/// A broker that has sent something keeps back what is short until that is acknowledged (Nagle's algorithm, which
/// mosquitto leaves on), and this system would wait 40 ms before it acknowledges. It forgets this now and then.
void acknowledge_at_once(int socket) {
  const int yes = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &yes, sizeof yes);
}

/// Null where the library takes null for "none".
const char *data_or_null(const QByteArray &text) { return text.isEmpty() ? nullptr : text.constData(); }

/// The text that a broker may give with a code.
QString text_in(const mosquitto_property *properties) {
  char *text = nullptr;
  mosquitto_property_read_string(properties, MQTT_PROP_REASON_STRING, &text, false);
  const QString result = text ? QStringLiteral(": ") + QString::fromUtf8(text) : QString();
  std::free(text);
  return result;
}

} // namespace

void MosquittoSession::DestroyClient::operator()(mosquitto *client) const { mosquitto_destroy(client); }

/// What the library calls. It must not be called from here but for a few functions, so all that is told later.
struct MosquittoSession::Callbacks {
  static MosquittoSession &of(void *object) { return *static_cast<MosquittoSession *>(object); }

  static void connected(mosquitto *, void *object, int code, int, const mosquitto_property *properties) {
    MosquittoSession &session = of(object);
    ++session._packets;
    session._is_to_tell_opened = code == 0;
    if (code == 0)
      return;
    const char *const text =
        session._settings.is_mqtt_5 ? mosquitto_reason_string(code) : mosquitto_connack_string(code);
    session._refusal =
        QStringLiteral("the broker refuses this client: ") + QString::fromUtf8(text) + text_in(properties);
  }
  static void disconnected(mosquitto *, void *object, int code, const mosquitto_property *properties) {
    MosquittoSession &session = of(object);
    session._has_gone = true;
    if (code >= first_refusal)
      session._refusal = QStringLiteral("the broker ends the connection: ") +
                         QString::fromUtf8(mosquitto_reason_string(code)) + text_in(properties);
  }
  static void message(mosquitto *, void *object, const mosquitto_message *message, const mosquitto_property *) {
    MosquittoSession &session = of(object);
    ++session._packets;
    if (message->payloadlen > most_payload_bytes) {
      ++session._too_large;
      session._messages.push_back({QByteArray(message->topic), QByteArray(), false, true});
      return;
    }
    session._messages.push_back({QByteArray(message->topic),
                                 QByteArray(static_cast<const char *>(message->payload), message->payloadlen),
                                 message->retain, false});
  }
  static void published(mosquitto *, void *object, int number, int code, const mosquitto_property *) {
    ++of(object)._packets;
    of(object)._published.emplace_back(number, code);
  }
  static void subscribed(mosquitto *, void *object, int number, int count, const int *codes,
                         const mosquitto_property *) {
    ++of(object)._packets;
    QVector<int> list(count);
    std::copy(codes, codes + count, list.begin());
    of(object)._subscribed.emplace_back(number, list);
  }
  static void unsubscribed(mosquitto *, void *object, int, const mosquitto_property *) { ++of(object)._packets; }
  static void logged(mosquitto *, void *object, int level, const char *text) {
    // The first one says most.
    if (level == MOSQ_LOG_ERR && of(object)._error.isEmpty())
      of(object)._error = QString::fromUtf8(text).trimmed();
  }
};

MosquittoSession::MosquittoSession(const BrokerSettings &settings, QObject *parent)
    : QObject(parent), _settings(settings) {
  prepare_library();
  _limit.setSingleShot(true);
  connect(&_limit, &QTimer::timeout, this, [this] { fail(QStringLiteral("the broker does not answer")); });
  _read_again.setSingleShot(true);
  _read_again.setInterval(0);
  connect(&_read_again, &QTimer::timeout, this, &MosquittoSession::read);
  // Only now and then, because all that it does is to look whether the time of keep-alive has come.
  constexpr int times = 4;
  _now_and_then.setInterval(std::max(1000, _settings.keep_alive_seconds * 1000 / times));
  connect(&_now_and_then, &QTimer::timeout, this, [this] {
    if (checked(mosquitto_loop_misc(_client.get())))
      read();
  });
}

MosquittoSession::~MosquittoSession() { release(); }

bool MosquittoSession::prepare() {
  _client.reset(mosquitto_new(data_or_null(_settings.client_id), true, this));
  if (!_client)
    return false;
  mosquitto *const client = _client.get();
  mosquitto_int_option(client, MOSQ_OPT_PROTOCOL_VERSION, _settings.is_mqtt_5 ? MQTT_PROTOCOL_V5 : MQTT_PROTOCOL_V311);
  mosquitto_int_option(client, MOSQ_OPT_TCP_NODELAY, 1);
  // Brokers drop what a client has to acknowledge first, when too much of it waits. This is as much as there can be.
  constexpr int most_unacknowledged = 65535;
  mosquitto_int_option(client, MOSQ_OPT_RECEIVE_MAXIMUM, most_unacknowledged);
  mosquitto_connect_v5_callback_set(client, Callbacks::connected);
  mosquitto_disconnect_v5_callback_set(client, Callbacks::disconnected);
  mosquitto_message_v5_callback_set(client, Callbacks::message);
  mosquitto_publish_v5_callback_set(client, Callbacks::published);
  mosquitto_subscribe_v5_callback_set(client, Callbacks::subscribed);
  mosquitto_unsubscribe_v5_callback_set(client, Callbacks::unsubscribed);
  mosquitto_log_callback_set(client, Callbacks::logged);
  if (!_settings.user.isEmpty() &&
      mosquitto_username_pw_set(client, _settings.user.toUtf8().constData(), _settings.password.constData()) != 0)
    return false;
  if (!_settings.will_topic.isEmpty() &&
      mosquitto_will_set(client, _settings.will_topic.constData(), static_cast<int>(_settings.will_payload.size()),
                         _settings.will_payload.constData(), 1, true) != 0)
    return false;
  return !_settings.has_tls || prepareTls();
}

bool MosquittoSession::prepareTls() {
  const QByteArray authority = QFile::encodeName(_settings.ca_file);
  const QByteArray certificate = QFile::encodeName(_settings.cert_file);
  const QByteArray key = QFile::encodeName(_settings.key_file);
  if (authority.isEmpty())
    mosquitto_int_option(_client.get(), MOSQ_OPT_TLS_USE_OS_CERTS, 1);
  if (authority.isEmpty() && certificate.isEmpty())
    return true;
  // The library takes no certificate of its client without a place for those of authorities.
  return mosquitto_tls_set(_client.get(), data_or_null(authority), authority.isEmpty() ? "/etc/ssl/certs" : nullptr,
                           data_or_null(certificate), data_or_null(key), no_password) == MOSQ_ERR_SUCCESS;
}

void MosquittoSession::open(const QString &host, int most_ms) {
  if (!prepare())
    return fail(_settings.has_tls ? QStringLiteral("the certificates cannot be read")
                                  : QStringLiteral("the settings are wrong"));
  _limit.start(most_ms);
  const int code = mosquitto_connect_bind_async(_client.get(), host.toUtf8().constData(), _settings.port,
                                                _settings.keep_alive_seconds, nullptr);
  const int descriptor = mosquitto_socket(_client.get());
  if (code > 0 || descriptor < 0) { // less than that: it goes on
    _errno = errno;
    return fail(reasonOf(code));
  }
  // The library closes its own in the middle of calls, and another socket may have that number at once.
  _descriptor.reset(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
  if (!_descriptor)
    return fail(QString::fromLocal8Bit(std::strerror(errno)));
  _readable = std::make_unique<QSocketNotifier>(_descriptor.get(), QSocketNotifier::Read);
  _writable = std::make_unique<QSocketNotifier>(_descriptor.get(), QSocketNotifier::Write);
  connect(_readable.get(), &QSocketNotifier::activated, this, [this] { read(); });
  connect(_writable.get(), &QSocketNotifier::activated, this, [this] { write(); });
  _now_and_then.start();
  watch();
}

void MosquittoSession::watch() {
  // Closed, in a call that is not told of it.
  if (_is_open && mosquitto_socket(_client.get()) < 0)
    QMetaObject::invokeMethod(this, &MosquittoSession::read, Qt::QueuedConnection);
  if (_writable)
    _writable->setEnabled(mosquitto_want_write(_client.get()));
}

void MosquittoSession::write() {
  if (checked(mosquitto_loop_write(_client.get(), 1)))
    deliver();
}

bool MosquittoSession::readOnce() {
  const int packets = _packets;
  return checked(mosquitto_loop_read(_client.get(), 1)) && packets != _packets;
}

bool MosquittoSession::checked(int code) {
  _errno = errno;
  // An end that the broker has announced is no failure of the call.
  if (code == MOSQ_ERR_SUCCESS && !_has_gone)
    return true;
  fail(reasonOf(code));
  return false;
}

void MosquittoSession::read() {
  if (!_client)
    return;
  const QPointer<MosquittoSession> self(this);
  acknowledge_at_once(mosquitto_socket(_client.get()));
  for (int round = 0; round < most_packets_in_a_round; ++round) {
    bool has_read = readOnce();
    // With TLS, twice: a packet that nobody is called for may stand before one that the system has handed over with it.
    if (!has_read && self && _client && _settings.has_tls)
      has_read = readOnce();
    if (!self || !_client)
      return;
    deliver();
    if (!self || !_client || !has_read)
      return;
  }
  // There may be more in the library that the system does not know of.
  if (_settings.has_tls)
    _read_again.start();
}

void MosquittoSession::deliver() {
  const QPointer<MosquittoSession> self(this);
  if (std::exchange(_is_to_tell_opened, false)) {
    _is_open = true;
    _limit.stop();
    _error.clear();
    // It would write a text for each packet.
    mosquitto_log_callback_set(_client.get(), nullptr);
    Q_EMIT opened();
  }
  // What is told may end this, or bring new ones.
  const auto messages = std::exchange(_messages, {});
  for (const Message &message : messages) {
    if (!self || !_client)
      return;
    if (message.is_too_large)
      Q_EMIT tooLargeCame(message.topic);
    else
      Q_EMIT messageCame(message.topic, message.payload, message.is_retained);
  }
  if (!self || !_client)
    return;
  const auto published_ones = std::exchange(_published, {});
  for (const auto &[number, code] : published_ones) {
    if (!self || !_client)
      return;
    const QByteArray topic = _waiting.topicOf(number);
    _waiting.remove(number);
    if (code >= first_refusal)
      Q_EMIT refused(topic, code);
  }
  if (!self || !_client)
    return;
  const auto subscribed_ones = std::exchange(_subscribed, {});
  for (const auto &[number, codes] : subscribed_ones) {
    if (!self || !_client)
      return;
    Q_EMIT subscribed(number, codes);
  }
  if (self && _client)
    watch();
}

bool MosquittoSession::publish(const QByteArray &topic, const QByteArray &payload, bool is_retained,
                               int quality_of_service) {
  const qint64 bytes = topic.size() + payload.size();
  if (!_is_open || !_waiting.hasRoomFor(bytes, quality_of_service))
    return false;
  int number = 0;
  const int code = mosquitto_publish(_client.get(), &number, topic.constData(), static_cast<int>(payload.size()),
                                     payload.constData(), quality_of_service, is_retained);
  if (code != MOSQ_ERR_SUCCESS)
    return false;
  // It may have been written at once.
  const auto is_this = [number](const std::pair<int, int> &one) { return one.first == number; };
  const auto done = std::find_if(_published.begin(), _published.end(), is_this);
  if (done == _published.end())
    _waiting.add(number, topic, bytes);
  else
    _published.erase(done);
  watch();
  return true;
}

int MosquittoSession::subscribe(const QVector<QByteArray> &filters, bool is_own) {
  if (!_is_open)
    return 0;
  std::vector<char *> texts;
  for (const QByteArray &filter : filters)
    texts.push_back(const_cast<char *>(filter.constData()));
  const int options =
      is_own ? MQTT_SUB_OPT_SEND_RETAIN_NEVER : MQTT_SUB_OPT_NO_LOCAL | MQTT_SUB_OPT_RETAIN_AS_PUBLISHED;
  int number = 0;
  const int code = mosquitto_subscribe_multiple(_client.get(), &number, static_cast<int>(texts.size()), texts.data(), 1,
                                                _settings.is_mqtt_5 ? options : 0, nullptr);
  watch();
  return code == MOSQ_ERR_SUCCESS ? number : 0;
}

void MosquittoSession::unsubscribe(const QVector<QByteArray> &filters) {
  if (!_is_open || filters.isEmpty())
    return;
  std::vector<char *> texts;
  for (const QByteArray &filter : filters)
    texts.push_back(const_cast<char *>(filter.constData()));
  mosquitto_unsubscribe_multiple(_client.get(), nullptr, static_cast<int>(texts.size()), texts.data(), nullptr);
  watch();
}

void MosquittoSession::close(int most_ms) {
  const QDeadlineTimer deadline(most_ms);
  const auto turn = [&] {
    pollfd socket = {mosquitto_socket(_client.get()), POLLIN, 0};
    if (socket.fd < 0)
      return false;
    if (mosquitto_want_write(_client.get()))
      socket.events |= POLLOUT;
    ::poll(&socket, 1, static_cast<int>(deadline.remainingTime()));
    if ((socket.revents & POLLOUT) && mosquitto_loop_write(_client.get(), 1) != 0)
      return false;
    if ((socket.revents & ~POLLOUT) && mosquitto_loop_read(_client.get(), 1) != 0)
      return false;
    _messages.clear();
    for (const auto &[number, code] : std::exchange(_published, {}))
      _waiting.remove(number);
    return !_has_gone && !deadline.hasExpired();
  };
  if (_client && _is_open) {
    while (_waiting.count() > 0 && turn()) {
    }
    mosquitto_disconnect(_client.get());
    while (mosquitto_want_write(_client.get()) && turn()) {
    }
  }
  release();
}

QString MosquittoSession::reasonOf(int code) const {
  if (!_refusal.isEmpty())
    return _refusal;
  if (!_error.isEmpty() && _settings.has_tls)
    return QStringLiteral("TLS: ") + _error;
  if (code == MOSQ_ERR_ERRNO && _errno != 0)
    return QString::fromLatin1(_errno == EPROTO ? "TLS: " : "") + QString::fromLocal8Bit(std::strerror(_errno));
  if (code == MOSQ_ERR_KEEPALIVE)
    return QStringLiteral("the broker does not answer any more");
  // Without an error: it ends within a message.
  for (const int end : {MOSQ_ERR_SUCCESS, MOSQ_ERR_ERRNO, MOSQ_ERR_CONN_LOST, MOSQ_ERR_NO_CONN})
    if (code == end)
      return QStringLiteral("the broker has closed the connection");
  return QString::fromUtf8(mosquitto_strerror(code));
}

void MosquittoSession::fail(const QString &reason) {
  // What came before the end counts.
  const QPointer<MosquittoSession> self(this);
  if (_is_open) {
    deliver();
    if (!self || !_is_open)
      return;
  }
  release();
  Q_EMIT closed(reason);
}

void MosquittoSession::release() {
  for (QTimer *timer : {&_limit, &_now_and_then, &_read_again})
    timer->stop();
  // Before their descriptor is closed. They may be what this is called from.
  for (auto *notifier : {&_readable, &_writable}) {
    if (!*notifier)
      continue;
    (*notifier)->setEnabled(false);
    notifier->release()->deleteLater();
  }
  _descriptor.reset();
  _is_open = false;
  _client.reset();
}

} // namespace buttondriver::bridge
