// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QSet>
#include <QTimer>

namespace buttondriver::bridge {

class BrokerConnection;

/// Publishes discovery messages a few panels at a time: those of a thousand panels would be more than may wait for the
/// broker at once. What is asked for while there is no connection waits for the next one. One thread.
class DiscoveryQueue : public QObject {
  Q_OBJECT

public:
  /// `broker` has to live as long as this.
  explicit DiscoveryQueue(BrokerConnection &broker);
  /// The prefix of the panels' topics and the name of the bridge. Before all else.
  void setNames(const QByteArray &prefix, const QByteArray &bridge);

  /// Once for each panel and `discovery_prefix`, unless it is taken back or forgotten.
  void announce(const QByteArray &discovery_prefix, const QByteArray &panel);
  /// Takes back what was announced; nothing if nothing was.
  void takeBack(const QByteArray &discovery_prefix, const QByteArray &panel);
  /// The broker may have lost what was announced: announce() announces again.
  void forget(const QByteArray &discovery_prefix, const QByteArray &panel);
  /// Another broker: nothing is announced there, and nothing has to be taken back.
  void forgetAll();

private:
  static constexpr int most_waiting_messages = 500; ///< beyond it, the broker is let catch up
  using Key = QPair<QByteArray, QByteArray>;        // discovery prefix, panel
  void goOn();
  bool publish(const Key &key, bool is_announced);

  BrokerConnection &_broker;
  QByteArray _prefix;
  QByteArray _bridge;
  QSet<Key> _announced;   // or about to be
  QMap<Key, bool> _to_do; // true: to announce; false: to take back
  QTimer _look_again;
};

} // namespace buttondriver::bridge
