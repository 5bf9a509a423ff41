// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/broker/broker_settings.h"
#include "bridge/broker/waiting_messages.h"
#include "files/owned_descriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>
#include <QVector>

#include <memory>
#include <utility>
#include <vector>

struct mosquitto;

namespace buttondriver::bridge {

/// One connection to a broker, from the attempt to its end, with libmosquitto in the event loop. Nothing of it lives on
/// in the next one. One thread.
class MosquittoSession : public QObject {
  Q_OBJECT

public:
  /// Larger messages are not delivered, but counted.
  static constexpr int most_payload_bytes = 8 * 1024 * 1024;

  explicit MosquittoSession(const BrokerSettings &settings, QObject *parent = nullptr);
  ~MosquittoSession() override;

  /// Tries to connect to `host`, for at most `most_ms`. Ends with opened() or closed(), which may come before this
  /// returns.
  void open(const QString &host, int most_ms);
  /// Says goodbye, after what was published is sent; waits for that, `most_ms` at most. No signal comes any more.
  void close(int most_ms);

  bool isOpen() const { return _is_open; }
  /// False: it could not be taken.
  bool publish(const QByteArray &topic, const QByteArray &payload, bool is_retained, int quality_of_service);
  /// All with quality of service 1. The number by which subscribed() answers, 0: it could not be sent. `is_own`: this
  /// client's own messages come too, and nothing that was kept.
  int subscribe(const QVector<QByteArray> &filters, bool is_own);
  void unsubscribe(const QVector<QByteArray> &filters);

  const WaitingMessages &waiting() const { return _waiting; }
  quint64 tooLarge() const { return _too_large; }

Q_SIGNALS:
  void opened();
  void closed(const QString &reason);
  void messageCame(const QByteArray &topic, const QByteArray &payload, bool is_retained);
  void tooLargeCame(const QByteArray &topic);
  /// The broker did not take what was published with quality of service 1. `code`: 128 or more. With MQTT 3.1.1 a
  /// broker cannot say so.
  void refused(const QByteArray &topic, int code);
  /// The codes of the filters; those from 128 on are refusals.
  void subscribed(int number, const QVector<int> &codes);

private:
  struct Callbacks;
  struct DestroyClient {
    void operator()(mosquitto *client) const;
  };
  struct Message {
    QByteArray topic;
    QByteArray payload;
    bool is_retained;
    bool is_too_large; ///< without its payload
  };

  bool prepare();
  bool prepareTls();
  void read();
  /// Whether the library was called back for a packet.
  bool readOnce();
  /// False, and all is told, if that is the end: `code` is what a call of the library has returned.
  bool checked(int code);
  void deliver();
  void write();
  void watch();
  void fail(const QString &reason);
  void release();
  QString reasonOf(int code) const;

  BrokerSettings _settings;
  std::unique_ptr<mosquitto, DestroyClient> _client;
  OwnedDescriptor _descriptor; // of the same socket as the client's
  std::unique_ptr<QSocketNotifier> _readable;
  std::unique_ptr<QSocketNotifier> _writable;
  QTimer _now_and_then;
  QTimer _limit;
  QTimer _read_again;
  WaitingMessages _waiting;
  quint64 _too_large = 0;
  bool _is_open = false;
  bool _has_gone = false; ///< the library says so
  int _errno = 0;         ///< after the last call
  int _packets = 0;       ///< read so far
  QString _refusal;       ///< why the broker does not want this client
  QString _error;         ///< that the library has told while it connected
  // What the library has called back for, told when it has returned.
  bool _is_to_tell_opened = false;
  std::vector<Message> _messages;
  std::vector<std::pair<int, int>> _published;
  std::vector<std::pair<int, QVector<int>>> _subscribed;
};

} // namespace buttondriver::bridge
