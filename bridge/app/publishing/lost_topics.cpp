// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/publishing/lost_topics.h"

#include "bridge/broker/broker_connection.h"

#include <utility>

namespace buttondriver::bridge {

LostTopics::LostTopics(BrokerConnection &broker, QByteArray prefix, bool comes_back, PayloadOf payload_of)
    : _broker(broker), _prefix(std::move(prefix)), _comes_back(comes_back), _payload_of(std::move(payload_of)) {
  _look_again.setSingleShot(true);
  _look_again.setInterval(5);
  connect(&_look_again, &QTimer::timeout, this, &LostTopics::publish);
}

void LostTopics::add(const QByteArray &panel, const QByteArray &topic) {
  if (_topics.contains(topic))
    return;
  _topics.insert(topic);
  _lost.emplace_back(panel, topic);
}

bool LostTopics::takeEcho(const QByteArray &topic, const QByteArray &payload) {
  const auto echo = _echoes.constFind(topic);
  if (echo == _echoes.cend() || *echo != payload)
    return false;
  _echoes.erase(echo);
  return true;
}

void LostTopics::publish() {
  while (!_lost.empty()) {
    const auto &[panel, topic] = _lost.front();
    const QByteArray payload = _payload_of(panel, topic);
    if (!payload.isEmpty() && (_broker.waitingMessages() > most_waiting_messages ||
                               !_broker.publish(_prefix + '/' + topic, payload, true, 1)))
      return _look_again.start();
    if (!payload.isEmpty() && _comes_back)
      _echoes.insert(topic, payload);
    _topics.remove(topic);
    _lost.pop_front();
  }
}

} // namespace buttondriver::bridge
