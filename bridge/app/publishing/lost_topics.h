// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QPair>
#include <QSet>
#include <QTimer>

#include <deque>
#include <functional>

namespace buttondriver::bridge {

class BrokerConnection;

/// Publishes again what a broker has lost, a few messages at a time: all that panels want may be far more than may wait
/// for the broker at once. One thread.
class LostTopics : public QObject {
  Q_OBJECT

public:
  /// The payload that a panel wants of a topic now; empty if it does not any more.
  using PayloadOf = std::function<QByteArray(const QByteArray &panel, const QByteArray &topic)>;

  /// `broker` has to live as long as this.
  /// `comes_back`: the broker sends this client what it publishes itself (MQTT 3.1.1).
  LostTopics(BrokerConnection &broker, QByteArray prefix, bool comes_back, PayloadOf payload_of);

  /// `topic` without the prefix. Topics of groups are wanted by several panels: each is published once.
  void add(const QByteArray &panel, const QByteArray &topic);
  void publish();
  /// True, once, for what was published here and has come back: it is as old as what the panels want.
  bool takeEcho(const QByteArray &topic, const QByteArray &payload);
  /// Whether all have been published: records of the order have to come after them, because they tell that the broker
  /// has its memory.
  bool isEmpty() const { return _lost.empty(); }

private:
  static constexpr int most_waiting_messages = 100; ///< beyond it, the broker is let catch up

  BrokerConnection &_broker;
  const QByteArray _prefix;
  const bool _comes_back;
  const PayloadOf _payload_of;
  std::deque<QPair<QByteArray, QByteArray>> _lost; // panels and topics
  QSet<QByteArray> _topics;                        // that are in it
  QHash<QByteArray, QByteArray> _echoes;           // payloads that are to come back
  QTimer _look_again;
};

} // namespace buttondriver::bridge
