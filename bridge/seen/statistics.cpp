// SPDX-License-Identifier: Apache-2.0
#include "bridge/seen/statistics.h"

#include <utility>

namespace buttondriver::bridge {

namespace {

QByteArray topic_of(const QByteArray &root, const char *name) { return root + "/statistics/" + name; }

QByteArray milliseconds(double seconds) {
  return seconds < 0 ? QByteArray() : QByteArray::number(seconds * 1000, 'f', 1);
}

} // namespace

QVector<Publication> Statistics::changesOf(const QByteArray &root, const PanelNumbers &numbers) {
  return changes(root, {{"ping_ms", milliseconds(numbers.ping_seconds)},
                        {"reconnects", QByteArray::number(numbers.reconnects)},
                        {"waiting_commands", QByteArray::number(numbers.waiting_commands)},
                        {"waiting_bytes", QByteArray::number(numbers.waiting_bytes)},
                        {"refused", QByteArray::number(numbers.refused)}});
}

QVector<Publication> Statistics::changesOf(const QByteArray &root, const BridgeNumbers &numbers) {
  return changes(root, {{"reconnects", QByteArray::number(numbers.broker_reconnects)},
                        {"messages", QByteArray::number(numbers.messages)},
                        {"wrong_messages", QByteArray::number(numbers.wrong_messages)},
                        {"waiting_messages", QByteArray::number(numbers.waiting_for_broker)}});
}

QVector<Publication> Statistics::changes(const QByteArray &root, QVector<Number> numbers) {
  QVector<Number> &told = _told[root];
  QVector<Publication> publications;
  for (int i = 0; i < numbers.size(); ++i) {
    const Number &now = numbers.at(i);
    if (!now.payload.isEmpty() && (told.isEmpty() || told.at(i).payload != now.payload))
      publications.append({topic_of(root, now.name), now.payload, true});
  }
  told = std::move(numbers);
  return publications;
}

QVector<Publication> Statistics::removalOf(const QByteArray &root) {
  QVector<Publication> publications;
  const QVector<Number> told = _told.take(root);
  for (const Number &number : told)
    publications.append({topic_of(root, number.name), QByteArray(), true});
  return publications;
}

void Statistics::forget() {
  for (QVector<Number> &told : _told)
    for (Number &number : told)
      number.payload.clear();
}

} // namespace buttondriver::bridge
