// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/publishing/discovery_queue.h"

#include "bridge/broker/broker_connection.h"
#include "bridge/seen/discovery.h"

namespace buttondriver::bridge {

DiscoveryQueue::DiscoveryQueue(BrokerConnection &broker) : _broker(broker) {
  _look_again.setSingleShot(true);
  _look_again.setInterval(20);
  connect(&_look_again, &QTimer::timeout, this, &DiscoveryQueue::goOn);
  connect(&_broker, &BrokerConnection::connected, this, &DiscoveryQueue::goOn);
}

void DiscoveryQueue::setNames(const QByteArray &prefix, const QByteArray &bridge) {
  _prefix = prefix;
  _bridge = bridge;
}

void DiscoveryQueue::announce(const QByteArray &discovery_prefix, const QByteArray &panel) {
  const Key key(discovery_prefix, panel);
  if (_announced.contains(key))
    return;
  _announced.insert(key);
  _to_do.insert(key, true);
  goOn();
}

void DiscoveryQueue::takeBack(const QByteArray &discovery_prefix, const QByteArray &panel) {
  const Key key(discovery_prefix, panel);
  if (!_announced.remove(key))
    return;
  _to_do.insert(key, false);
  goOn();
}

void DiscoveryQueue::forget(const QByteArray &discovery_prefix, const QByteArray &panel) {
  _announced.remove(Key(discovery_prefix, panel));
}

void DiscoveryQueue::forgetAll() {
  _announced.clear();
  _to_do.clear();
}

void DiscoveryQueue::goOn() {
  while (!_to_do.isEmpty() && _broker.isConnected()) {
    const Key key = _to_do.firstKey();
    if (_broker.waitingMessages() > most_waiting_messages || !publish(key, _to_do.first()))
      return _look_again.start();
    _to_do.remove(key);
  }
}

bool DiscoveryQueue::publish(const Key &key, bool is_announced) {
  const auto messages = is_announced ? discovery_messages(key.first, _prefix, _bridge, key.second)
                                     : discovery_removal(key.first, _prefix, _bridge, key.second);
  for (const Publication &message : messages)
    if (!_broker.publish(message.topic, message.payload, message.is_retained, 1))
      return false;
  return true;
}

} // namespace buttondriver::bridge
