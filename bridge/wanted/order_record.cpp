// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/order_record.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QString>

namespace buttondriver::bridge {

QByteArray make_order_record(const QVector<QByteArray> &topics) {
  QJsonArray array;
  for (const QByteArray &topic : topics)
    array.append(QString::fromUtf8(topic));
  return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<QHash<QByteArray, int>> read_order_record(const QByteArray &record) {
  if (record.size() > longest_order_record)
    return std::nullopt;
  const QJsonDocument document = QJsonDocument::fromJson(record);
  if (!document.isArray())
    return std::nullopt;
  QHash<QByteArray, int> places;
  const QJsonArray array = document.array();
  for (int i = 0; i < array.size(); ++i) {
    const QByteArray topic = array.at(i).toString().toUtf8();
    if (!topic.isEmpty() && !places.contains(topic))
      places.insert(topic, i);
  }
  return places;
}

} // namespace buttondriver::bridge
